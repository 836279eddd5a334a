#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include <X11/ICE/ICElib.h>
#include <X11/SM/SMlib.h>
#include <poll.h>

namespace murmel::test {

/// The session manager of the program that is started while it lives; of one at a time.
class SessionManager {
 public:
  SessionManager() {
    std::array<char, 256> error{};
    ::IceSetIOErrorHandler([](IceConn) {});
    const auto mayConnect = [](char*) -> Bool { return True; };
    if (::SmsInitialize("test", "1", &SessionManager::accept, this, mayConnect, error.size(), error.data()) ==
            0 ||
        ::IceListenForConnections(&count_, &listeners_, error.size(), error.data()) == 0) {
      throw std::runtime_error(error.data());
    }
    const std::span all(listeners_, static_cast<std::size_t>(count_));
    listener_ = *std::ranges::find_if(all, [](auto* listener) {
      return std::string(::IceGetListenConnectionString(listener)).starts_with("unix");
    });
    ::IceSetHostBasedAuthProc(listener_, mayConnect);
    ::setenv("SESSION_MANAGER", ::IceGetListenConnectionString(listener_), 1);
    thread_ = std::jthread([this](const std::stop_token& stop) { serve(stop); });
  }
  ~SessionManager() {
    ::unsetenv("SESSION_MANAGER");
    thread_.request_stop();
    thread_.join();
    ::IceFreeListenObjs(count_, listeners_);
  }
  SessionManager(const SessionManager&) = delete;
  SessionManager& operator=(const SessionManager&) = delete;

  enum class Request { none, save, saveAndEnd };
  /// Asks the program; it has saved itself when `isSaving` is false again.
  void ask(Request request) { request_ = request; }
  [[nodiscard]] bool isSaving() const { return request_ != Request::none; }

 private:
  static Status accept(SmsConn /*client*/, SmPointer self, unsigned long* mask, SmsCallbacks* callbacks,
                       char** /*refusal*/) {
    *mask = SmsRegisterClientProcMask | SmsSaveYourselfDoneProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsCloseConnectionProcMask;
    callbacks->register_client.manager_data = self;
    callbacks->register_client.callback = [](SmsConn client, SmPointer it, char* /*previous*/) -> Status {
      static_cast<SessionManager*>(it)->client_ = client;
      ::SmsRegisterClientReply(client, ::SmsGenerateClientID(client));
      ::SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);  // as every new one
      return 1;
    };
    callbacks->save_yourself_done.manager_data = self;
    callbacks->save_yourself_done.callback = [](SmsConn client, SmPointer it, Bool /*success*/) {
      auto* manager = static_cast<SessionManager*>(it);
      const bool wasAsked = std::exchange(manager->isAsked_, false);
      const auto request = wasAsked ? manager->request_.exchange(Request::none) : Request::none;
      request == Request::saveAndEnd ? ::SmsDie(client) : ::SmsSaveComplete(client);
    };
    callbacks->set_properties.callback = [](SmsConn, SmPointer, int, SmProp**) {};
    callbacks->delete_properties.callback = [](SmsConn, SmPointer, int, char**) {};
    callbacks->close_connection.callback = [](SmsConn, SmPointer, int, char**) {};
    return 1;
  }

  void serve(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      if (!isReadable(::IceGetListenConnectionNumber(listener_))) continue;
      IceAcceptStatus status{};
      auto* connection = ::IceAcceptConnection(listener_, &status);
      isAsked_ = false;
      client_ = nullptr;
      while (connection != nullptr && !stop.stop_requested()) {
        if (isReadable(::IceConnectionNumber(connection)) &&
            ::IceProcessMessages(connection, nullptr, nullptr) != IceProcessMessagesSuccess)
          break;
        if (client_ == nullptr || isAsked_ || !isSaving()) continue;
        isAsked_ = true;
        ::SmsSaveYourself(client_, SmSaveBoth, request_ == Request::saveAndEnd ? True : False,
                          SmInteractStyleNone, False);
      }
    }
  }
  static bool isReadable(int descriptor) {
    pollfd waiting{descriptor, POLLIN, 0};
    return ::poll(&waiting, 1, 20) > 0;
  }

  int count_ = 0;
  IceListenObj* listeners_ = nullptr;
  IceListenObj listener_ = nullptr;
  SmsConn client_ = nullptr;
  bool isAsked_ = false;
  std::atomic<Request> request_ = Request::none;
  std::jthread thread_;
};

}  // namespace murmel::test
