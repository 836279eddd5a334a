#pragma once

#include <QColor>
#include <QPalette>
#include <QProxyStyle>

namespace murmel {

/// Distances and sizes of every window, in device-independent pixels: all are multiples of one unit.
namespace grid {
inline constexpr int unit = 4;
inline constexpr int small = 2 * unit;    ///< between a title and what explains it
inline constexpr int medium = 3 * unit;   ///< between controls
inline constexpr int large = 6 * unit;    ///< between groups, and around a page
inline constexpr int radius = 10;         ///< of cards
inline constexpr int controlHeight = 34;  ///< of buttons, fields and lists to choose from
inline constexpr int controlRadius = 7;
}  // namespace grid

enum class ColourScheme { light, dark };

/// What the desktop says about how things should look.
struct DesktopLook {
  ColourScheme scheme = ColourScheme::light;
  bool highContrast = false;

  friend bool operator==(const DesktopLook&, const DesktopLook&) = default;
};

/// The colours of a look. Base is a card, Window what lies behind, Highlight the accent, Mid a line,
/// PlaceholderText a text of second rank.
QPalette paletteFor(DesktopLook look);

/// The colours that mean something; readable as text on a card of this palette.
enum class Meaning { good, warning, danger };
QColor colourOf(Meaning meaning, const QPalette& palette);

/// One look for every window, in the palette's colours: what it draws follows a change of the palette at
/// once.
class Style final : public QProxyStyle {
 public:
  Style();

  /// Nothing on the screen moves by itself.
  void setReducedMotion(bool reduced) { reducesMotion_ = reduced; }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                       const QWidget* widget) const override;
  [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const override;
  [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* result) const override;
  [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                     SubControl part, const QWidget* widget) const override;

  /// Of messages: the symbols that the windows use.
  [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                                   const QWidget* widget) const override;

 private:
  bool reducesMotion_ = false;
};

/// Of what is not text and has to be seen nevertheless: the edge of a bar that is empty, a circle that is
/// open.
QColor outlineOf(const QPalette& palette);

/// Whether what this widget shows may move by itself.
bool mayMove(const QWidget& widget);

/// A button that carries out what its window is for, drawn in the accent: `QPushButton::setDefault` says it.
/// One that removes something for good has this property set.
inline constexpr const char* destructiveProperty = "destructive";

}  // namespace murmel
