#include "Interface/Common/Icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

namespace murmel {

namespace {

/// Outlines in a square of 24 units, stroked two units wide.
const char* outlineOf(Symbol symbol) {
  switch (symbol) {
    case Symbol::general:
      return "<path d='M4 7h9M19 7h1M4 17h1M11 17h9'/><circle cx='16' cy='7' r='2.6'/><circle cx='8' cy='17' "
             "r='2.6'/>";
    case Symbol::keyboard:
      return "<rect x='2.5' y='6' width='19' height='12' rx='2.5'/><path d='M6.5 10h.01M10 10h.01M14 "
             "10h.01M17.5 10h.01M8 14h8'/>";
    case Symbol::microphone:
      return "<rect x='9' y='3' width='6' height='11' rx='3'/><path d='M5.5 11.5a6.5 6.5 0 0 0 13 0M12 "
             "18v3'/>";
    case Symbol::languages:
      return "<circle cx='12' cy='12' r='9'/><path d='M3 12h18M12 3c3 3 3.5 6 3.5 9s-.5 6-3.5 "
             "9c-3-3-3.500-6-3.500-9s.5-6 3.500-9z'/>";
    case Symbol::text:
      return "<path d='M4 6V4.500h12V6M10 4.500V15M8 15h4M4 20h16M17 11h4M17 15.500h4'/>";
    case Symbol::models:
      return "<path d='M12 3l9 4.500-9 4.500-9-4.500zM3.500 12L12 16.300l8.500-4.300M3.500 16.200L12 "
             "20.500l8.500-4.300'/>";
    case Symbol::history:
      return "<circle cx='12' cy='12' r='9'/><path d='M12 7v5l3.500 2'/>";
    case Symbol::advanced:
      return "<path d='M14.500 6.500a4.200 4.200 0 0 1 5.600-3.100l-2.700 2.700 1.500 1.500 "
             "2.500-2.600a4.200 4.200 0 0 1-5.600 5.300L8 18.200a2.100 2.100 0 0 1-3-3z'/>";
    case Symbol::search:
      return "<circle cx='10.500' cy='10.500' r='6.500'/><path d='M15.500 15.500L21 21'/>";
    case Symbol::copy:
      return "<rect x='8.500' y='8.500' width='12' height='12' rx='2.500'/><path d='M15.500 5.500a2 2 0 0 "
             "0-2-2h-8a2 2 0 0 0-2 2v8a2 2 0 0 0 2 2'/>";
    case Symbol::paste:
      return "<rect x='5' y='4.500' width='14' height='16.500' rx='2.500'/><path d='M9 4.500a1.500 1.500 0 0 "
             "1 1.500-1.500h3A1.500 1.500 0 0 1 15 4.500V6H9zM12 10v7M9 14l3 3 3-3'/>";
    case Symbol::remove:
      return "<path d='M4 6.500h16M9.500 6V4.500A1.500 1.500 0 0 1 11 3h2a1.500 1.500 0 0 1 1.500 1.500V6M6 "
             "6.500l.8 12.300A2 2 0 0 0 8.800 20.700h6.400a2 2 0 0 0 2-1.900L18 6.500M10 11v5.500M14 "
             "11v5.500'/>";
    case Symbol::lock:
      return "<rect x='5' y='10.500' width='14' height='10' rx='2.500'/><path d='M8 10.500V7.500a4 4 0 0 1 8 "
             "0v3'/>";
    case Symbol::warning:
      return "<path d='M12 4l9.200 16H2.800zM12 10v4.500M12 17.300h.01'/>";
    case Symbol::information:
      return "<circle cx='12' cy='12' r='9'/><path d='M12 11v5.500M12 7.700h.01'/>";
    case Symbol::good:
      return "<circle cx='12' cy='12' r='9'/><path d='M8 12.300l2.800 2.900L16 9.500'/>";
    case Symbol::heart:
      return "<path d='M12 20S3.500 14.800 3.500 9A4.500 4.500 0 0 1 12 7a4.500 4.500 0 0 1 8.500 2c0 "
             "5.800-8.500 11-8.500 11z'/>";
    case Symbol::close:
      return "<path d='M6 6l12 12M18 6L6 18'/>";
    case Symbol::up:
      return "<path d='M6 14.500l6-6 6 6'/>";
    case Symbol::down:
      return "<path d='M6 9.500l6 6 6-6'/>";
    case Symbol::more:
      return "<path d='M5 12h.01M12 12h.01M19 12h.01'/>";
    case Symbol::ring:
      return "<circle cx='12' cy='12' r='9'/>";
    case Symbol::stop:
      return "<rect x='5.500' y='5.500' width='13' height='13' rx='2'/>";
  }
  return "";
}

QByteArray drawing(Symbol symbol, const QColor& colour) {
  return QByteArray("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 24 24'><g fill='none' stroke='") +
         colour.name().toLatin1() + "' stroke-width='1.800' stroke-linecap='round' stroke-linejoin='round'>" +
         outlineOf(symbol) + "</g></svg>";
}

/// Asks for the palette whenever it draws, so that it follows a change between light and dark.
class SymbolEngine final : public QIconEngine {
 public:
  explicit SymbolEngine(Symbol symbol) : symbol_(symbol) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText;
    QSvgRenderer(drawing(symbol_, QGuiApplication::palette().color(group, role))).render(painter, rect);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixmap;
  }
  [[nodiscard]] QIconEngine* clone() const override { return new SymbolEngine(symbol_); }

 private:
  Symbol symbol_;
};

}  // namespace

QIcon symbolIcon(Symbol symbol) {
  return QIcon(new SymbolEngine(symbol));
}

QPixmap symbolPixmap(Symbol symbol, int size, const QColor& colour, qreal devicePixelRatio) {
  QPixmap pixmap(QSize(size, size) * devicePixelRatio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  QSvgRenderer(drawing(symbol, colour)).render(&painter);
  painter.end();
  pixmap.setDevicePixelRatio(devicePixelRatio);
  return pixmap;
}

QIcon applicationIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x2564CF));
    const auto edge = size / 32.0;
    painter.drawRoundedRect(QRectF(edge, edge, size - 2 * edge, size - 2 * edge), size / 4.5, size / 4.5);
    const auto margin = size / 5.0;
    QSvgRenderer(drawing(Symbol::microphone, Qt::white))
        .render(&painter, QRectF(margin, margin, size - 2 * margin, size - 2 * margin));
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace murmel
