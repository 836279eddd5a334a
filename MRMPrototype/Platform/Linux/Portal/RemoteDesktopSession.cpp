#include "Platform/Linux/Portal/RemoteDesktopSession.h"

#include <string_view>
#include <utility>

namespace murmel {

namespace {

constexpr const char* remoteDesktop = "RemoteDesktop";
constexpr std::uint32_t keyboard = 1;
constexpr std::uint32_t untilRevoked = 2;
/// The first version that gives tokens.
constexpr std::uint32_t versionWithTokens = 2;
/// What a request says that the desktop has ended for another reason than the user's word.
constexpr std::uint32_t otherEnd = 2;

}  // namespace

RemoteDesktopSession::RemoteDesktopSession(Portal& portal, PortalToken& token, PortalVersions versions)
    : portal_(portal),
      token_(token),
      versions_(versions),
      owner_(portal.bus().onOwner(Portal::service, [this](bool isThere) {
        // Nobody has said no: the one that comes instead is asked as at a start.
        if (!isThere && (isOpen() || standing_ == Standing::asking)) leave(Standing::closed);
        if (isThere && standing_ == Standing::closed) restore();
      })) {}

RemoteDesktopSession::~RemoteDesktopSession() {
  if (isOpen() || standing_ == Standing::asking) tellClose();
}

void RemoteDesktopSession::tellClose() const {
  // What the desktop still asks is asked no more.
  if (standing_ == Standing::asking && !request_.object.empty())
    bus().tell({Portal::service, request_.object, "org.freedesktop.portal.Request"}, "Close");
  bus().tell(Portal::sessionObject(session_), "Close");
}

void RemoteDesktopSession::leave(Standing standing) {
  closed_.reset();
  answered_.reset();
  hasClipboard_ = false;
  standing_ = standing;
  didChange_.emit();
}

void RemoteDesktopSession::restore() {
  if (versions_.keyboard < versionWithTokens || isOpen() || standing_ == Standing::asking) return;
  token_.read([this](const std::optional<std::string>& token) {
    if (token && standing_ == Standing::closed) begin(token);
  });
}

void RemoteDesktopSession::ask() {
  if (isOpen()) return;
  if (standing_ == Standing::asking) {
    // A question that was lost is asked again.
    tellClose();
    leave(Standing::closed);
  }
  if (versions_.keyboard < versionWithTokens) return begin(std::nullopt);
  token_.read([this](const std::optional<std::string>& token) {
    if (!isOpen() && standing_ != Standing::asking) begin(token);
  });
}

BusMessage RemoteDesktopSession::newCall(const char* interface, const char* member) const {
  auto call = bus().newCall(Portal::interface(interface), member);
  if (call && sd_bus_message_append(call.get(), "o", session_.object.c_str()) < 0) call.reset();
  return call;
}

void RemoteDesktopSession::send(BusMessage call, const Portal::Token& request,
                                std::function<void(sd_bus_message*)> granted) {
  request_ = request;
  answered_ = portal_.onAnswer(
      request, [this, granted = std::move(granted)](std::uint32_t refusal, sd_bus_message* results) {
        const auto next = granted;
        if (refusal == 0) return next(results);
        // A token that was good for nothing is not tried again; one that only met a bad moment is.
        if (refusal != otherEnd) token_.forget();
        tellClose();
        leave(Standing::refused);
      });
  if (bus().send(std::move(call))) return;
  const bool isThere = !bus().ownerOf(Portal::service).empty();
  leave(isThere ? Standing::refused : Standing::closed);
}

void RemoteDesktopSession::begin(const std::optional<std::string>& token) {
  standing_ = Standing::asking;
  didChange_.emit();
  session_ = portal_.session();
  closed_ = portal_.onEnd(session_, [this] { leave(isOpen() ? Standing::ended : Standing::refused); });
  const auto request = portal_.request();
  auto call = bus().newCall(Portal::interface(remoteDesktop), "CreateSession");
  if (call)
    sd_bus_message_append(call.get(), "a{sv}", 2, "handle_token", "s", request.name.c_str(),
                          "session_handle_token", "s", session_.name.c_str());
  send(std::move(call), request, [this, token](sd_bus_message*) { selectDevices(token); });
}

void RemoteDesktopSession::selectDevices(const std::optional<std::string>& token) {
  const auto request = portal_.request();
  auto call = newCall(remoteDesktop, "SelectDevices");
  if (call) {
    auto* message = call.get();
    sd_bus_message_open_container(message, 'a', "{sv}");
    sd_bus_message_append(message, "{sv}{sv}", "handle_token", "s", request.name.c_str(), "types", "u",
                          keyboard);
    if (versions_.keyboard >= versionWithTokens)
      sd_bus_message_append(message, "{sv}", "persist_mode", "u", untilRevoked);
    if (token) sd_bus_message_append(message, "{sv}", "restore_token", "s", token->c_str());
    sd_bus_message_close_container(message);
  }
  send(std::move(call), request, [this](sd_bus_message*) { start(); });
}

void RemoteDesktopSession::start() {
  if (versions_.clipboard > 0) {
    auto call = newCall("Clipboard", "RequestClipboard");
    if (call) sd_bus_message_append(call.get(), "a{sv}", 0);
    bus().send(std::move(call));
    willStart_.emit();
  }
  const auto request = portal_.request();
  auto call = newCall(remoteDesktop, "Start");
  if (call) sd_bus_message_append(call.get(), "sa{sv}", "", 1, "handle_token", "s", request.name.c_str());
  send(std::move(call), request, [this](sd_bus_message* results) { started(results); });
}

void RemoteDesktopSession::started(sd_bus_message* results) {
  std::uint32_t devices = 0;
  std::string token;
  if (sd_bus_message_enter_container(results, 'a', "{sv}") > 0) {
    while (sd_bus_message_enter_container(results, 'e', "sv") > 0) {
      const char* key = nullptr;
      const char* text = nullptr;
      int flag = 0;
      sd_bus_message_read(results, "s", &key);
      const std::string_view name(key == nullptr ? "" : key);
      if (name == "devices") {
        sd_bus_message_read(results, "v", "u", &devices);
      } else if (name == "clipboard_enabled") {
        if (sd_bus_message_read(results, "v", "b", &flag) >= 0) hasClipboard_ = flag != 0;
      } else if (name == "restore_token" && sd_bus_message_read(results, "v", "s", &text) >= 0) {
        token = text;
      } else {
        sd_bus_message_skip(results, "v");
      }
      sd_bus_message_exit_container(results);
    }
  }
  if (!token.empty()) token_.keep(token);
  ::explicit_bzero(token.data(), token.size());
  if ((devices & keyboard) == 0) {
    tellClose();
    return leave(Standing::refused);
  }
  standing_ = Standing::open;
  didChange_.emit();
}

}  // namespace murmel
