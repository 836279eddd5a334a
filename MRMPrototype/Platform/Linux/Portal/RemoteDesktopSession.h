#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/DesktopProbe.h"
#include "Platform/Linux/Portal/Portal.h"
#include "Platform/Linux/Portal/PortalToken.h"

#include <optional>
#include <string>

namespace murmel {

/// The portal's session in which Murmel may press keys, and has the clipboard where the portal gives that.
/// The desktop asks the user for it: it is opened when the user wants it, and at a start only by the token of
/// the last time. Main thread.
class RemoteDesktopSession {
 public:
  enum class Standing {
    closed,  ///< nobody has asked for it yet
    asking,  ///< the desktop may be asking the user
    open,
    refused,  ///< by the user or the desktop
    ended,    ///< by the user or the desktop, after it was open
  };

  /// The longest that anything waits for an open session.
  static constexpr Duration patience = std::chrono::milliseconds(300);

  /// All outlive this.
  RemoteDesktopSession(Portal& portal, PortalToken& token, PortalVersions versions);
  ~RemoteDesktopSession();
  RemoteDesktopSession(const RemoteDesktopSession&) = delete;
  RemoteDesktopSession& operator=(const RemoteDesktopSession&) = delete;

  /// Opens it if that takes no question, as far as is known.
  void restore();
  /// With the user's word: the desktop may ask them.
  void ask();

  [[nodiscard]] Standing standing() const { return standing_; }
  [[nodiscard]] bool isOpen() const { return standing_ == Standing::open; }
  [[nodiscard]] bool hasClipboard() const { return isOpen() && hasClipboard_; }
  [[nodiscard]] Signal<>& didChange() { return didChange_; }
  /// Before the desktop is asked: from here on its word about the clipboard can be heard.
  [[nodiscard]] Signal<>& willStart() { return willStart_; }

  [[nodiscard]] SessionBus& bus() const { return portal_.bus(); }
  /// A call of the portal's for this session, which is its first argument.
  [[nodiscard]] BusMessage newCall(const char* interface, const char* member) const;
  [[nodiscard]] const std::string& object() const { return session_.object; }

 private:
  void begin(const std::optional<std::string>& token);
  void selectDevices(const std::optional<std::string>& token);
  void start();
  void started(sd_bus_message* results);
  /// Sends what is answered by a signal, and goes on when that is granted.
  void send(BusMessage call, const Portal::Token& request, std::function<void(sd_bus_message*)> granted);
  void leave(Standing standing);
  void tellClose() const;

  Portal& portal_;
  PortalToken& token_;
  PortalVersions versions_;
  Standing standing_ = Standing::closed;
  bool hasClipboard_ = false;
  Portal::Token session_;
  Portal::Token request_;
  Signal<> didChange_;
  Signal<> willStart_;
  Registration owner_;
  Registration closed_;
  Registration answered_;
};

}  // namespace murmel
