#pragma once

#include "Foundation/Registration.h"
#include "Platform/DesktopClient.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace murmel {

/// A handle on an application that was seen in front.
struct RunningApplication {
  DesktopClient client;
  std::string bundleIdentifier;  ///< what kind of application it is: the class of its window
  std::string instanceName;      ///< its own name for this window, for applications that share a class
  std::uint32_t window = 0;      ///< the window that was in front
  std::uint64_t startTime = 0;   ///< of the process, to tell it from a later one with the same number
  pid_t clipboardProxy = 0;      ///< who reads the clipboard in its stead; 0: itself
  bool proxyLooksFirst = false;  ///< and it reads everything that is copied, as soon as it is
  bool isPanel = false;          ///< a panel, dock or notification, not a place where somebody writes
};

/// Who asks for what is pasted into the application.
inline DesktopClient pasteReader(const RunningApplication& application) {
  return application.clipboardProxy == 0 ? application.client : DesktopClient{application.clipboardProxy, 0};
}

inline bool isSameApplication(const RunningApplication& one, const RunningApplication& other) {
  return isSameProgram(one.client, other.client);
}

/// Text is meant for one window: another one of the same program is another place. A window that is not known
/// is any of them.
inline bool isSameWindow(const RunningApplication& one, const RunningApplication& other) {
  const bool isKnown = one.window != 0 && other.window != 0;
  return isSameApplication(one, other) && (!isKnown || one.window == other.window);
}

/// The applications of the desktop. Main thread.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// The application in front at this moment; none while the desktop is between two.
  virtual std::optional<RunningApplication> frontmostApplication() = 0;

  /// Tells of every application that has come to the front and stayed there for a moment. Panels are told of
  /// too.
  [[nodiscard]] virtual Registration onActivation(std::function<void(const RunningApplication&)> handler) = 0;

  /// Whether the process has ended or the window has been destroyed.
  [[nodiscard]] virtual bool isTerminated(const RunningApplication& application) = 0;

  /// Asks for the application's window to be brought to the front, and for its workspace to be shown. Whether
  /// and when that happens is for `frontmostApplication` to say.
  virtual void activate(const RunningApplication& application) = 0;
};

}  // namespace murmel
