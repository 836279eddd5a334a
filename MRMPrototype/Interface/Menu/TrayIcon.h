#pragma once

#include "Dictation/DictationState.h"

#include <QColor>
#include <QIcon>

namespace murmel {

enum class TrayLook { rest, recording, working, trouble, paused };

TrayLook trayLook(const DictationState& state, bool isPaused);

/// A microphone in the ink of the panel; a colour tells what is going on, a line through it that it is
/// paused. Drawn, so that it is sharp at every size and needs no file.
QIcon trayIcon(TrayLook look, bool isPanelDark);

}  // namespace murmel
