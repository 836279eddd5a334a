#include "Platform/Linux/KWin/XWaylandWindows.h"

namespace murmel {

XWaylandWindows::XWaylandWindows(bool serverAnswers) {
  if (!serverAnswers) return;
  if (auto opened = X11Connection::open()) connection_ = *std::move(opened);
}

std::optional<XWaylandWindows::Names> XWaylandWindows::find(pid_t process) {
  if (!connection_ || process == 0) return std::nullopt;
  for (const auto window : connection_->propertyWords(connection_->root(), "_NET_CLIENT_LIST")) {
    if (connection_->clientOf(window).processIdentifier != process) continue;
    // Two strings with an end each: the instance, and the class.
    const auto names = connection_->propertyBytes(window, "WM_CLASS");
    const auto middle = names.find('\0');
    if (middle == std::string::npos) return Names{};
    return Names{std::string(names.c_str() + middle + 1), names.substr(0, middle)};
  }
  return std::nullopt;
}

}  // namespace murmel
