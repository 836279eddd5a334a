#pragma once

#include <QIcon>

namespace murmel {

/// The signs of the windows: drawn in the colours of the palette, sharp at every scale.
enum class Symbol {
  general,
  keyboard,
  microphone,
  languages,
  text,
  models,
  history,
  advanced,
  search,
  copy,
  paste,
  remove,
  lock,
  warning,
  information,
  good,
  heart,
  close,
  up,
  down,
  more,
  stop,
  ring,
};

QIcon symbolIcon(Symbol symbol);

/// The same in a colour that means something.
QPixmap symbolPixmap(Symbol symbol, int size, const QColor& colour, qreal devicePixelRatio);

/// The application's own icon.
QIcon applicationIcon();

}  // namespace murmel
