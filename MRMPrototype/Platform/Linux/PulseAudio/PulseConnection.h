#pragma once

#include "Platform/Linux/PulseAudio/PulseServer.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <pulse/context.h>
#include <pulse/operation.h>
#include <pulse/thread-mainloop.h>

namespace murmel {

/// A thread that talks to a sound server. Its callbacks run on that thread with its lock held; every other
/// thread takes the lock before it touches the context or a stream.
class PulseConnection {
 public:
  class Lock {
   public:
    explicit Lock(PulseConnection& connection) : loop_(connection.loop_.get()) {
      pa_threaded_mainloop_lock(loop_);
    }
    ~Lock() { pa_threaded_mainloop_unlock(loop_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    pa_threaded_mainloop* loop_;
  };

  /// A thread and an unconnected context; nothing when there is no thread to be had.
  static std::unique_ptr<PulseConnection> open(const PulseServer& server);

  /// Ends the thread, then the connection.
  ~PulseConnection();
  PulseConnection(const PulseConnection&) = delete;
  PulseConnection& operator=(const PulseConnection&) = delete;

  /// Connects; `onState` is called for every change of the context's state, with the lock held, and may be
  /// called from inside this call. False when there is no server; none is ever started by this. Not under the
  /// lock.
  bool connect(std::move_only_function<void(pa_context_state_t)> onState);

  /// Ends the thread: no callback runs when it returns, and none later. Not under the lock.
  void stopThread();

  [[nodiscard]] pa_context* context() const { return context_.get(); }
  /// Under the lock.
  [[nodiscard]] pa_context_state_t state() const { return pa_context_get_state(context_.get()); }

  /// Gives an operation that nobody waits for back.
  static void release(pa_operation* operation) {
    if (operation != nullptr) pa_operation_unref(operation);
  }

 private:
  struct Deleter {
    void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
    void operator()(pa_context* context) const { pa_context_unref(context); }
  };

  explicit PulseConnection(std::optional<std::string> address) : address_(std::move(address)) {}

  std::optional<std::string> address_;
  std::move_only_function<void(pa_context_state_t)> onState_;
  std::unique_ptr<pa_threaded_mainloop, Deleter> loop_;
  std::unique_ptr<pa_context, Deleter> context_;
  bool running_ = false;
};

}  // namespace murmel
