#pragma once

namespace murmel {

/// Whether windows may be translucent: always on Wayland, on X11 while a compositor runs. A round trip to the
/// X server. Needs a QGuiApplication.
bool isComposited();

}  // namespace murmel
