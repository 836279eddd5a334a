#include "Platform/Fake/FakePasteboard.h"

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Signal.h"

#include <deque>
#include <set>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace murmel {

namespace {

const std::set<std::string> textTypes = {"UTF8_STRING", "STRING", "TEXT", "text/plain",
                                         "text/plain;charset=utf-8"};

void requireHoldable(const ClipboardSnapshot& contents) {
  for (const auto& item : contents.items) {
    for (const auto& value : item.values) {
      const bool knownUnit = value.unitBits == 8 || value.unitBits == 16 || value.unitBits == 32;
      if (value.type.empty() || !knownUnit ||
          value.data.size() % static_cast<std::size_t>(value.unitBits / 8) != 0)
        throw std::logic_error("a value that no clipboard can hold");
    }
  }
}

}  // namespace

struct FakePasteboard::State {
  State(Executor& usedExecutor, const Clock& usedClock) : executor(usedExecutor), clock(usedClock) {}

  Executor& executor;
  const Clock& clock;
  ClipboardSnapshot contents;
  std::int64_t count = 1;
  bool ours = false;
  Duration captureDelay{};
  bool complete = true;
  bool refuses = false;
  bool managerPresent = false;
  Signal<const ClipboardRead&> reads;
  Signal<std::int64_t> changes;

  std::deque<std::pair<Duration, Job>> operations;
  Registration running;
  bool busy = false;

  void runNext(const std::shared_ptr<State>& self) {
    if (busy || operations.empty()) return;
    busy = true;
    auto [delay, job] = std::move(operations.front());
    operations.pop_front();
    running = executor.after(delay, [weak = std::weak_ptr(self), job = std::move(job)]() mutable {
      job();
      const auto state = weak.lock();
      if (!state) return;
      state->busy = false;
      state->runNext(state);
    });
  }

  std::optional<std::int64_t> replace(ClipboardSnapshot with) {
    if (refuses) return std::nullopt;
    contents = std::move(with);
    ours = true;
    complete = true;
    captureDelay = {};
    return ++count;
  }
};

FakePasteboard::FakePasteboard(Executor& executor, const Clock& clock)
    : executor_(executor), state_(std::make_shared<State>(executor, clock)) {}

FakePasteboard::~FakePasteboard() = default;

template <class Operation>
auto FakePasteboard::perform(Duration delay, Operation operation) {
  using Result = std::invoke_result_t<Operation&>;
  auto [sender, receiver] = makeOneShot<Result>();
  Job job = [operation = std::move(operation), sender = std::move(sender)]() mutable {
    sender.send(operation());
  };
  state_->operations.emplace_back(delay, std::move(job));
  state_->runNext(state_);
  return std::move(receiver);
}

Task<std::int64_t> FakePasteboard::changeCount() {
  auto receiver = perform({}, [state = state_] { return state->count; });
  const auto count = co_await receiver;
  co_return *count;
}

Task<ClipboardCapture> FakePasteboard::capture() {
  auto receiver = perform(state_->captureDelay, [state = state_] {
    return ClipboardCapture{state->contents, state->complete};
  });
  auto captured = co_await receiver;
  co_return *std::move(captured);
}

Task<std::optional<std::string>> FakePasteboard::data(std::string type) {
  auto receiver = perform({}, [state = state_, type = std::move(type)]() -> std::optional<std::string> {
    const auto* value = state->contents.find(type);
    return value == nullptr ? std::nullopt : std::optional(value->data);
  });
  auto bytes = co_await receiver;
  co_return *std::move(bytes);
}

Task<std::optional<std::int64_t>> FakePasteboard::mrmReplace(ClipboardSnapshot contents) {
  requireHoldable(contents);
  auto receiver = perform({}, [state = state_, contents = std::move(contents)]() mutable {
    return state->replace(std::move(contents));
  });
  const auto count = co_await receiver;
  co_return *count;
}

Task<std::optional<std::int64_t>> FakePasteboard::mrmReplaceIfUnchanged(ClipboardSnapshot contents,
                                                                        std::int64_t expected) {
  requireHoldable(contents);
  auto receiver = perform(
      {},
      [state = state_, contents = std::move(contents), expected]() mutable -> std::optional<std::int64_t> {
        if (state->count != expected) return std::nullopt;
        return state->replace(std::move(contents));
      });
  const auto count = co_await receiver;
  co_return *count;
}

Registration FakePasteboard::onRead(std::function<void(const ClipboardRead&)> handler) {
  return state_->reads.subscribe(std::move(handler));
}

Registration FakePasteboard::onForeignChange(std::function<void(std::int64_t)> handler) {
  return state_->changes.subscribe(std::move(handler));
}

Task<bool> FakePasteboard::handOver() {
  auto receiver = perform({}, [state = state_] { return state->ours && state->managerPresent; });
  const auto taken = co_await receiver;
  co_return *taken;
}

void FakePasteboard::writeByAnother(ClipboardSnapshot contents) {
  requireHoldable(contents);
  state_->contents = std::move(contents);
  state_->ours = false;
  state_->complete = true;
  state_->captureDelay = {};
  executor_.post([state = state_, count = ++state_->count] { state->changes.emit(count); });
}

std::optional<std::string> FakePasteboard::readBy(const DesktopClient& reader, const std::string& type) {
  const auto* value = state_->contents.find(type);
  if (value == nullptr) return std::nullopt;
  if (state_->ours) {
    const ClipboardRead read{state_->count, textTypes.contains(type), reader, state_->clock.now()};
    executor_.post([state = state_, read] { state->reads.emit(read); });
  }
  return value->data;
}

const ClipboardSnapshot& FakePasteboard::contents() const {
  return state_->contents;
}

void FakePasteboard::makeOwnerSlow(Duration delay) {
  state_->captureDelay = delay;
  state_->complete = false;
}

void FakePasteboard::refuseReplacing() {
  state_->refuses = true;
}

void FakePasteboard::setManagerPresent(bool present) {
  state_->managerPresent = present;
}

}  // namespace murmel
