#include "Interface/Common/Style.h"

#include "Interface/Common/Icons.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>
#include <algorithm>
#include <utility>

namespace murmel {

namespace {

constexpr int scrollBarExtent = 12;
constexpr qreal lineWidth = 1.0;
constexpr qreal focusWidth = 2.0;

QColor mixed(const QColor& from, const QColor& to, double part) {
  const auto blend = [part](int a, int b) { return static_cast<int>(a + (b - a) * part); };
  return {blend(from.red(), to.red()), blend(from.green(), to.green()), blend(from.blue(), to.blue())};
}

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

void box(QPainter& painter, const QRectF& rect, const QColor& fill, const QColor& line, qreal radius) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(fill);
  painter.setPen(line.isValid() ? QPen(line, lineWidth) : QPen(Qt::NoPen));
  const auto inset = line.isValid() ? lineWidth / 2 : 0;
  painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
}

void focusRing(QPainter& painter, const QRectF& rect, const QPalette& palette, qreal radius) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(palette.color(QPalette::Highlight), focusWidth));
  painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
}

void chevron(QPainter& painter, const QPointF& centre, const QColor& colour) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(
      QPolygonF({centre + QPointF(-4, -2), centre + QPointF(0, 2), centre + QPointF(4, -2)}));
}

void drawButton(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
  const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const auto& palette = option.palette;
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool isMain =
      enabled && button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
  const bool isFlat = button != nullptr && button->features.testFlag(QStyleOptionButton::Flat);
  auto fill = isMain ? palette.color(QPalette::Highlight) : palette.color(QPalette::Button);
  const bool isDestructive = widget != nullptr && widget->property(destructiveProperty).toBool();
  if (isMain && isDestructive) fill = colourOf(Meaning::danger, palette).darker(isDark(palette) ? 160 : 100);
  const auto ink = palette.color(isMain ? QPalette::HighlightedText : QPalette::ButtonText);
  if (option.state & (QStyle::State_Sunken | QStyle::State_On))
    fill = mixed(fill, ink, 0.18);
  else if (enabled && option.state.testFlag(QStyle::State_MouseOver))
    fill = mixed(fill, ink, 0.08);
  else if (isFlat)
    fill = Qt::transparent;
  box(painter, option.rect, fill, isMain || isFlat ? QColor() : palette.color(QPalette::Mid),
      grid::controlRadius);
  if (option.state.testFlag(QStyle::State_HasFocus) &&
      option.state.testFlag(QStyle::State_KeyboardFocusChange))
    focusRing(painter, option.rect, isMain ? QPalette(palette.color(QPalette::WindowText)) : palette,
              grid::controlRadius);
}

void drawIndicator(const QStyleOption& option, QPainter& painter, bool isRound) {
  const auto& palette = option.palette;
  const QRectF rect = QRectF(option.rect).adjusted(1, 1, -1, -1);
  const bool on = option.state.testFlag(QStyle::State_On);
  const auto radius = isRound ? rect.width() / 2 : 4.0;
  const auto accent = option.state.testFlag(QStyle::State_Enabled) ? palette.color(QPalette::Highlight)
                                                                   : palette.color(QPalette::Mid);
  box(painter, rect, on ? accent : palette.color(QPalette::Base),
      on ? accent : palette.color(QPalette::PlaceholderText), radius);
  if (!on) return;
  painter.setPen(
      QPen(palette.color(QPalette::HighlightedText), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  const auto c = rect.center();
  if (isRound) {
    painter.setBrush(palette.color(QPalette::HighlightedText));
    painter.drawEllipse(c, 2, 2);
  } else {
    painter.drawPolyline(QPolygonF({c + QPointF(-3.5, 0), c + QPointF(-1, 2.8), c + QPointF(3.8, -3)}));
  }
}

/// What a choice opens, around the list itself.
bool isListOfChoices(const QWidget* widget) {
  return widget != nullptr && widget->inherits("QComboBoxPrivateContainer");
}

void drawComboBox(const QStyleOptionComboBox& option, QPainter& painter, const QWidget* widget) {
  QStyleOptionButton button;
  button.QStyleOption::operator=(option);
  button.state &= ~QStyle::State_On;
  drawButton(button, painter, widget);
  const bool mirrored = option.direction == Qt::RightToLeft;
  const QPointF centre(mirrored ? option.rect.left() + 16 : option.rect.right() - 16,
                       option.rect.center().y() + 1);
  chevron(painter, centre, option.palette.color(QPalette::PlaceholderText));
}

void drawScrollBar(const QStyleOptionSlider& option, QPainter& painter, QRect handle) {
  if (option.maximum <= option.minimum) return;
  const bool active =
      option.state.testFlag(QStyle::State_MouseOver) || option.state.testFlag(QStyle::State_Sunken);
  const int margin = active ? 2 : 3;
  auto colour = option.palette.color(QPalette::PlaceholderText);
  colour.setAlphaF(active ? 0.8F : 0.45F);
  const auto rect = QRectF(handle).adjusted(margin, margin, -margin, -margin);
  box(painter, rect, colour, QColor(), std::min(rect.width(), rect.height()) / 2);
}

}  // namespace

QPalette paletteFor(DesktopLook look) {
  const bool dark = look.scheme == ColourScheme::dark;
  const auto pick = [dark](QRgb light, QRgb night) { return QColor(dark ? night : light); };
  const auto window = pick(0xF5F5F7, 0x1D1E21);
  const auto base = pick(0xFFFFFF, 0x292A2E);
  const auto text = look.highContrast ? pick(0x000000, 0xFFFFFF) : pick(0x1C1D21, 0xECEDF0);
  const auto second = look.highContrast ? text : pick(0x5C5E66, 0xA9ABB3);
  const auto line = look.highContrast ? text : pick(0xD9DADF, 0x3C3E44);
  const auto accent = pick(0x2564CF, 0x7AABFF);
  QPalette palette(text, pick(0xFFFFFF, 0x34363B), base, window, line, text, text, base, window);
  palette.setColor(QPalette::Highlight, accent);
  palette.setColor(QPalette::HighlightedText, pick(0xFFFFFF, 0x10131A));
  palette.setColor(QPalette::AlternateBase, mixed(window, text, 0.05));
  palette.setColor(QPalette::Mid, line);
  palette.setColor(QPalette::Midlight, line);
  palette.setColor(QPalette::Link, accent);
  palette.setColor(QPalette::LinkVisited, accent);
  palette.setColor(QPalette::PlaceholderText, second);
  palette.setColor(QPalette::ToolTipBase, base);
  palette.setColor(QPalette::ToolTipText, text);
  for (const auto role :
       {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::PlaceholderText})
    palette.setColor(QPalette::Disabled, role, mixed(base, second, 0.7));
  palette.setColor(QPalette::Disabled, QPalette::Button, window);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, line);
  return palette;
}

QColor colourOf(Meaning meaning, const QPalette& palette) {
  const bool dark = isDark(palette);
  switch (meaning) {
    case Meaning::good:
      return QRgb{dark ? 0x7BCF8EU : 0x1E7B34U};
    case Meaning::warning:
      return QRgb{dark ? 0xF0C060U : 0x8A5A00U};
    case Meaning::danger:
      return QRgb{dark ? 0xFF8F86U : 0xC0271AU};
  }
  std::unreachable();
}

QColor outlineOf(const QPalette& palette) {
  return mixed(palette.color(QPalette::Base), palette.color(QPalette::PlaceholderText), 0.7);
}

Style::Style() : QProxyStyle(QStringLiteral("Fusion")) {}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  painter->save();
  switch (element) {
    case PE_PanelButtonCommand:
    case PE_PanelButtonTool:
      drawButton(*option, *painter, widget);
      break;
    case PE_PanelLineEdit:
    case PE_FrameLineEdit: {
      const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
      if (frame != nullptr && frame->lineWidth == 0) break;
      if (element == PE_PanelLineEdit)
        box(*painter, option->rect, option->palette.color(QPalette::Base),
            option->palette.color(QPalette::Mid), grid::controlRadius);
      if (option->state.testFlag(State_HasFocus))
        focusRing(*painter, option->rect, option->palette, grid::controlRadius);
      break;
    }
    case PE_IndicatorCheckBox:
      drawIndicator(*option, *painter, false);
      break;
    case PE_IndicatorRadioButton:
      drawIndicator(*option, *painter, true);
      break;
    case PE_FrameFocusRect:
      if (option->state.testFlag(State_KeyboardFocusChange))
        focusRing(*painter, option->rect, option->palette, grid::controlRadius);
      break;
    case PE_PanelItemViewItem:
      if (option->state.testFlag(State_Selected))
        box(*painter, option->rect, option->palette.color(QPalette::Highlight), QColor(),
            grid::controlRadius);
      break;
    case PE_Frame:
      if (isListOfChoices(widget)) {  // a window of its own, whose corners nothing rounds
        painter->setPen(option->palette.color(QPalette::Mid));
        painter->setBrush(option->palette.color(QPalette::Base));
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        break;
      }
      box(*painter, option->rect, option->palette.color(QPalette::Base), option->palette.color(QPalette::Mid),
          grid::controlRadius);
      if (option->state.testFlag(State_HasFocus))
        focusRing(*painter, option->rect, option->palette, grid::controlRadius);
      break;
    case PE_FrameDefaultButton:
      break;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
  painter->restore();
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
  const auto* const bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
  if (element == CE_ProgressBarGroove && bar != nullptr) {
    box(*painter, bar->rect, bar->palette.color(QPalette::AlternateBase), outlineOf(bar->palette),
        bar->rect.height() / 2.0);
  } else if (element == CE_ProgressBarContents && bar != nullptr && bar->maximum > bar->minimum) {
    const auto part = static_cast<double>(bar->progress - bar->minimum) / (bar->maximum - bar->minimum);
    QRectF filled(bar->rect);
    filled.setWidth(std::max(filled.height(), filled.width() * part));
    if (bar->direction == Qt::RightToLeft) filled.moveRight(QRectF(bar->rect).right());
    box(*painter, filled, bar->palette.color(QPalette::Highlight), QColor(), filled.height() / 2);
  } else if (element == CE_PushButtonLabel) {
    QStyleOptionButton label(*qstyleoption_cast<const QStyleOptionButton*>(option));
    const bool isMain =
        label.features.testFlag(QStyleOptionButton::DefaultButton) && label.state.testFlag(State_Enabled);
    if (isMain) label.palette.setColor(QPalette::ButtonText, label.palette.color(QPalette::HighlightedText));
    QProxyStyle::drawControl(element, &label, painter, widget);
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
  painter->save();
  if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
      control == CC_ComboBox && combo != nullptr) {
    drawComboBox(*combo, *painter, widget);
  } else if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
             control == CC_ScrollBar && slider != nullptr) {
    drawScrollBar(*slider, *painter, subControlRect(CC_ScrollBar, slider, SC_ScrollBarSlider, widget));
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
  painter->restore();
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const {
  auto size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  switch (type) {
    case CT_PushButton:
      return {size.width() + 2 * grid::small, std::max(size.height(), grid::controlHeight)};
    case CT_ComboBox:
      return {size.width() + 3 * grid::small, std::max(size.height(), grid::controlHeight)};
    case CT_LineEdit:
    case CT_SpinBox:
      return {size.width(), std::max(size.height(), grid::controlHeight)};
    case CT_ItemViewItem:
      return {size.width(), size.height() + grid::small};
    default:
      return size;
  }
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
    case PM_ScrollBarExtent:
      return scrollBarExtent;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return 18;
    case PM_DefaultFrameWidth:
      // Rounded corners need room beside what a frame holds.
      return qobject_cast<const QAbstractScrollArea*>(widget) != nullptr || isListOfChoices(widget)
                 ? grid::unit
                 : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_FocusFrameHMargin:  // of the words in a list, which begin where those of a field do
      return qobject_cast<const QAbstractItemView*>(widget) != nullptr
                 ? grid::small - 1
                 : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
      return grid::medium;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* result) const {
  switch (hint) {
    case SH_UnderlineShortcut:
    case SH_ComboBox_Popup:  // a list below, not a menu over it
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
      return 0;
    case SH_Widget_Animation_Duration:
      return reducesMotion_ ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
    default:
      return QProxyStyle::styleHint(hint, option, widget, result);
  }
}

bool mayMove(const QWidget& widget) {
  return widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) > 0;
}

QIcon Style::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
  constexpr int size = 40;
  const auto palette = widget != nullptr ? widget->palette() : QGuiApplication::palette();
  const auto drawn = [&](Symbol symbol, const QColor& colour) {
    return QIcon(symbolPixmap(symbol, size, colour, widget != nullptr ? widget->devicePixelRatioF() : 1));
  };
  switch (which) {
    case SP_MessageBoxInformation:
    case SP_MessageBoxQuestion:
      return drawn(Symbol::information, palette.color(QPalette::Highlight));
    case SP_MessageBoxWarning:
      return drawn(Symbol::warning, colourOf(Meaning::warning, palette));
    case SP_MessageBoxCritical:
      return drawn(Symbol::warning, colourOf(Meaning::danger, palette));
    default:
      return QProxyStyle::standardIcon(which, option, widget);
  }
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                            const QWidget* widget) const {
  if (control != CC_ScrollBar) {
    auto rect = QProxyStyle::subControlRect(control, option, part, widget);
    if (control == CC_ComboBox && part == SC_ComboBoxEditField)
      rect = visualRect(option->direction, option->rect, option->rect.adjusted(grid::small, 2, -28, -2));
    return rect;
  }
  const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (bar == nullptr) return {};
  const bool upright = bar->orientation == Qt::Vertical;
  const int length = upright ? bar->rect.height() : bar->rect.width();
  const auto range = static_cast<qint64>(bar->maximum) - bar->minimum;
  int handle = length;
  if (range > 0)
    handle =
        std::clamp(static_cast<int>(static_cast<qint64>(bar->pageStep) * length / (range + bar->pageStep)),
                   std::min(32, length), length);
  const int start = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition, length - handle,
                                            bar->upsideDown);
  const auto along = [&](int from, int size) {
    const auto rect = upright ? QRect(bar->rect.x(), bar->rect.y() + from, bar->rect.width(), size)
                              : QRect(bar->rect.x() + from, bar->rect.y(), size, bar->rect.height());
    return visualRect(upright ? Qt::LeftToRight : bar->direction, bar->rect, rect);
  };
  switch (part) {
    case SC_ScrollBarSlider:
      return along(start, handle);
    case SC_ScrollBarGroove:
      return bar->rect;
    case SC_ScrollBarSubPage:
      return along(0, start);
    case SC_ScrollBarAddPage:
      return along(start + handle, length - start - handle);
    default:
      return {};  // no arrows at the ends
  }
}

}  // namespace murmel
