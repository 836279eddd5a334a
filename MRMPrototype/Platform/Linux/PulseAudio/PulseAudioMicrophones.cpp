#include "Platform/Linux/PulseAudio/PulseAudioMicrophones.h"

#include "Platform/Linux/PulseAudio/PulseConnection.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include <pulse/introspect.h>

namespace murmel {

namespace {

/// A server that hangs does not hold the queue for longer.
constexpr auto patience = std::chrono::seconds(2);

/// What the server says, gathered on its thread.
struct Answer {
  std::mutex mutex;
  std::condition_variable changed;
  pa_context_state_t state = PA_CONTEXT_UNCONNECTED;
  bool isDone = false;
  bool succeeded = false;
  std::string defaultSource;
  std::vector<MicrophoneSource> sources;

  template <class Change>
  void note(Change change) {
    {
      const std::scoped_lock lock(mutex);
      change();
    }
    changed.notify_all();
  }
  template <class Condition>
  bool await(Condition condition) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, patience, condition);
  }
};

void takeServer(pa_context* /*context*/, const pa_server_info* server, void* data) {
  auto& answer = *static_cast<Answer*>(data);
  answer.note([&] {
    if (server != nullptr && server->default_source_name != nullptr)
      answer.defaultSource = server->default_source_name;
  });
}

void takeSource(pa_context* /*context*/, const pa_source_info* source, int end, void* data) {
  auto& answer = *static_cast<Answer*>(data);
  answer.note([&] {
    if (end != 0) answer.isDone = true;
    const bool isMicrophone = end == 0 && source != nullptr && source->monitor_of_sink == PA_INVALID_INDEX;
    if (!isMicrophone) return;
    answer.sources.push_back({source->name, source->description, source->name == answer.defaultSource});
  });
}

void takeOutcome(pa_context* /*context*/, int success, void* data) {
  auto& answer = *static_cast<Answer*>(data);
  answer.note([&] {
    answer.isDone = true;
    answer.succeeded = success != 0;
  });
}

/// Connects, lets `ask` ask, and waits for the end of the answer.
void converse(const PulseServer& server, Answer& answer, const std::function<void(pa_context*)>& ask) {
  const auto connection = PulseConnection::open(server);
  if (!connection) return;
  const bool connects = connection->connect(
      [&answer](pa_context_state_t state) { answer.note([&] { answer.state = state; }); });
  const bool isSettled = connects && answer.await([&] {
    return answer.state == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(answer.state);
  });
  if (isSettled && answer.state == PA_CONTEXT_READY) {
    {
      const PulseConnection::Lock lock(*connection);
      ask(connection->context());
    }
    answer.await([&] { return answer.isDone || !PA_CONTEXT_IS_GOOD(answer.state); });
  }
  connection->stopThread();
}

}  // namespace

PulseAudioMicrophones::PulseAudioMicrophones(Executor& executor, PulseServer server)
    : executor_(executor), server_(std::move(server)), queue_(executor, "murmel-sources") {}

void PulseAudioMicrophones::list(std::function<void(std::vector<MicrophoneSource>)> answer) {
  queue_.enqueue([this, server = server_, alive = std::weak_ptr(alive_), answer = std::move(answer)] {
    Answer said;
    converse(server, said, [&said](pa_context* context) {
      PulseConnection::release(pa_context_get_server_info(context, &takeServer, &said));
      PulseConnection::release(pa_context_get_source_info_list(context, &takeSource, &said));
    });
    executor_.post([alive, answer, sources = std::move(said.sources)] {
      if (!alive.expired()) answer(sources);
    });
  });
}

void PulseAudioMicrophones::choose(const std::string& name, std::function<void(bool done)> answer) {
  queue_.enqueue([this, server = server_, alive = std::weak_ptr(alive_), name, answer = std::move(answer)] {
    Answer said;
    converse(server, said, [&](pa_context* context) {
      PulseConnection::release(pa_context_set_default_source(context, name.c_str(), &takeOutcome, &said));
    });
    executor_.post([alive, answer, done = said.succeeded] {
      if (!alive.expired()) answer(done);
    });
  });
}

}  // namespace murmel
