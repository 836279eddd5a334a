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
  SharedSnapshot contents = shared({});
  std::int64_t count = 1;
  bool ours = false;
  std::optional<DesktopClient> onlyReader;
  Duration captureDelay{};
  Duration replaceDelay{};
  Signal<> replaced;
  bool refuses = false;
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

  std::int64_t become(SharedSnapshot with, bool byUs, std::optional<DesktopClient> forReader) {
    contents = std::move(with);
    ours = byUs;
    onlyReader = forReader;
    captureDelay = {};
    ++count;
    replaced.emit();
    return count;
  }

  std::optional<std::int64_t> replace(SharedSnapshot with, std::optional<DesktopClient> forReader) {
    if (refuses) return std::nullopt;
    return become(std::move(with), true, forReader);
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
  auto looking = perform({}, [state = state_] {
    return std::pair(ClipboardCapture{state->contents, true, state->count}, state->captureDelay);
  });
  const auto found = co_await looking;
  const auto& [captured, delay] = *found;
  if (delay <= Duration{}) co_return found->first;
  auto [sender, receiver] = makeOneShot<bool>();
  const auto answer = std::make_shared<OneShotSender<bool>>(std::move(sender));
  const auto delivery = executor_.after(delay, [answer] { answer->send(true); });
  const auto end =
      state_->replaced.subscribe([this, answer] { executor_.post([answer] { answer->send(false); }); });
  const auto delivered = co_await receiver;
  ClipboardCapture result = captured;
  if (!delivered.value_or(false)) {
    result.contents = shared({});
    result.complete = false;
  }
  co_return result;
}

Task<std::optional<std::string>> FakePasteboard::data(std::string type) {
  auto receiver = perform({}, [state = state_, type = std::move(type)]() -> std::optional<std::string> {
    const auto* value = state->contents->find(type);
    return value == nullptr ? std::nullopt : std::optional(value->data);
  });
  auto bytes = co_await receiver;
  co_return *std::move(bytes);
}

Task<std::optional<std::int64_t>> FakePasteboard::mrmReplace(ClipboardSnapshot contents) {
  requireHoldable(contents);
  auto receiver = perform(state_->replaceDelay, [state = state_, contents = shared(std::move(contents))] {
    return state->replace(contents, std::nullopt);
  });
  const auto count = co_await receiver;
  co_return *count;
}

Task<std::optional<std::int64_t>> FakePasteboard::mrmReplaceFor(DesktopClient onlyReader,
                                                                ClipboardSnapshot contents) {
  requireHoldable(contents);
  auto receiver = perform({}, [state = state_, contents = shared(std::move(contents)), onlyReader] {
    return state->replace(contents, onlyReader);
  });
  const auto count = co_await receiver;
  co_return *count;
}

Task<std::optional<std::int64_t>> FakePasteboard::mrmReplaceIfUnchanged(SharedSnapshot contents,
                                                                        std::int64_t expected) {
  requireHoldable(*contents);
  auto receiver = perform(
      {}, [state = state_, contents = std::move(contents), expected]() -> std::optional<std::int64_t> {
        if (state->count != expected) return std::nullopt;
        return state->replace(contents, std::nullopt);
      });
  const auto count = co_await receiver;
  co_return *count;
}

Task<bool> FakePasteboard::serveEverybody(std::int64_t changeCount) {
  auto receiver = perform({}, [state = state_, changeCount] {
    const bool stands = state->ours && state->count == changeCount;
    if (stands) state->onlyReader.reset();
    return stands;
  });
  const auto stands = co_await receiver;
  co_return *stands;
}

Registration FakePasteboard::onRead(std::function<void(const ClipboardRead&)> handler) {
  return state_->reads.subscribe(std::move(handler));
}

Registration FakePasteboard::onForeignChange(std::function<void(std::int64_t)> handler) {
  return state_->changes.subscribe(std::move(handler));
}

Task<ClipboardHandOver> FakePasteboard::handOver() {
  const bool isOurs = state_->ours && !state_->contents->isEmpty();
  co_return isOurs ? ClipboardHandOver::failed : ClipboardHandOver::notOurs;  // there is nobody to take it
}

void FakePasteboard::writeByAnother(ClipboardSnapshot contents) {
  requireHoldable(contents);
  const auto count = state_->become(shared(std::move(contents)), false, std::nullopt);
  executor_.post([state = state_, count] { state->changes.emit(count); });
}

std::optional<std::string> FakePasteboard::readBy(const DesktopClient& reader, const std::string& type) {
  using Kind = ClipboardRead::Kind;
  const bool isList = type == "TARGETS";
  const auto* value = state_->contents->find(type);
  if (value == nullptr && !isList) return std::nullopt;
  const bool isText = textTypes.contains(type);
  const auto& only = state_->onlyReader;
  const bool isRefused = isText && only && !isSameProgram(reader, *only);
  if (state_->ours) {
    const auto kind = isList      ? Kind::listOfForms
                      : isRefused ? Kind::refused
                      : isText    ? Kind::text
                                  : Kind::otherForm;
    const ClipboardRead read{state_->count, kind, reader, state_->clock.now()};
    executor_.post([state = state_, read] { state->reads.emit(read); });
  }
  if (isRefused) return std::nullopt;
  return isList ? std::string() : value->data;
}

const ClipboardSnapshot& FakePasteboard::contents() const {
  return *state_->contents;
}

void FakePasteboard::makeOwnerSlow(Duration delay) {
  state_->captureDelay = delay;
}

void FakePasteboard::makeReplacingSlow(Duration delay) {
  state_->replaceDelay = delay;
}

void FakePasteboard::refuseReplacing(bool refuses) {
  state_->refuses = refuses;
}

}  // namespace murmel
