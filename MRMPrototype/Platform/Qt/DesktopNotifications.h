#pragma once

#include <QString>
#include <functional>

namespace murmel {

/// Shows a message through the desktop's notification service. `answer` is told once, from the event loop,
/// whether the service took it; a desktop without one says no.
void notifyDesktop(const QString& application, const QString& title, const QString& text,
                   std::function<void(bool taken)> answer);

}  // namespace murmel
