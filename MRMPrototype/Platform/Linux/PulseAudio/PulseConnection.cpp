#include "Platform/Linux/PulseAudio/PulseConnection.h"

namespace murmel {

std::unique_ptr<PulseConnection> PulseConnection::open(const PulseServer& server) {
  std::unique_ptr<PulseConnection> connection(new PulseConnection(server.address));
  connection->loop_.reset(pa_threaded_mainloop_new());
  if (!connection->loop_) return nullptr;
  pa_threaded_mainloop_set_name(connection->loop_.get(), "murmel-audio");
  auto* api = pa_threaded_mainloop_get_api(connection->loop_.get());
  connection->context_.reset(pa_context_new(api, server.applicationName.c_str()));
  if (!connection->context_ || pa_threaded_mainloop_start(connection->loop_.get()) < 0) return nullptr;
  connection->running_ = true;
  return connection;
}

PulseConnection::~PulseConnection() {
  stopThread();
  if (!context_) return;
  pa_context_set_state_callback(context_.get(), nullptr, nullptr);
  pa_context_disconnect(context_.get());
}

bool PulseConnection::connect(std::move_only_function<void(pa_context_state_t)> onState) {
  const Lock lock(*this);
  onState_ = std::move(onState);
  const auto report = [](pa_context* context, void* self) {
    static_cast<PulseConnection*>(self)->onState_(pa_context_get_state(context));
  };
  pa_context_set_state_callback(context_.get(), report, this);
  return pa_context_connect(context_.get(), address_ ? address_->c_str() : nullptr, PA_CONTEXT_NOAUTOSPAWN,
                            nullptr) >= 0;
}

void PulseConnection::stopThread() {
  if (!std::exchange(running_, false)) return;
  pa_threaded_mainloop_stop(loop_.get());
}

}  // namespace murmel
