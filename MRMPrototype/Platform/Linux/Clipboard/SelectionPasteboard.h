#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Signal.h"
#include "Platform/ClipboardPasteboard.h"

#include <coroutine>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace murmel {

/// Whom the thread that serves a selection tells what happens to it; called on that thread.
struct SelectionObserver {
  std::function<void(const ClipboardRead&)> read;
  std::function<void(std::int64_t changeCount)> changedByAnother;
};

/// What the main thread is told of one selection.
class SelectionEvents {
 public:
  /// Carries what the thread observes to the main thread, if anybody is still there.
  static SelectionObserver observer(Executor& executor, const std::shared_ptr<SelectionEvents>& events) {
    const std::weak_ptr weak(events);
    return {.read =
                [&executor, weak](const ClipboardRead& read) {
                  executor.post([weak, read] {
                    if (const auto alive = weak.lock()) alive->reads.emit(read);
                  });
                },
            .changedByAnother =
                [&executor, weak](std::int64_t changeCount) {
                  executor.post([weak, changeCount] {
                    if (const auto alive = weak.lock()) alive->changes.emit(changeCount);
                  });
                }};
  }

  Signal<const ClipboardRead&> reads;
  Signal<std::int64_t> changes;
};

/// The main thread's end of a selection that a thread of its own serves. `Loop` runs jobs there (`enqueue`);
/// `Selection` lives there, and is what the windowing system's adapter has. What others own is read in ways
/// that differ: `capture` and `data` are the adapter's.
template <class Loop, class Selection>
class SelectionPasteboard : public ClipboardPasteboard {
 public:
  SelectionPasteboard(Executor& executor, std::shared_ptr<SelectionEvents> events, Loop& loop,
                      Selection& selection)
      : executor_(executor), events_(std::move(events)), loop_(loop), selection_(selection) {}

  Task<std::int64_t> changeCount() override {
    return ask(loop_, [selection = &selection_] { return selection->changeCount(); });
  }
  Task<std::optional<std::int64_t>> mrmReplace(ClipboardSnapshot contents) override {
    return replace(shared(std::move(contents)), std::nullopt, std::nullopt);
  }
  Task<std::optional<std::int64_t>> mrmReplaceFor(DesktopClient onlyReader,
                                                  ClipboardSnapshot contents) override {
    return replace(shared(std::move(contents)), std::nullopt, onlyReader);
  }
  Task<std::optional<std::int64_t>> mrmReplaceIfUnchanged(SharedSnapshot contents,
                                                          std::int64_t expected) override {
    return replace(std::move(contents), expected, std::nullopt);
  }
  Task<bool> serveEverybody(std::int64_t changeCount) override {
    return ask(loop_,
               [selection = &selection_, changeCount] { return selection->serveEverybody(changeCount); });
  }
  [[nodiscard]] Registration onRead(std::function<void(const ClipboardRead&)> handler) override {
    return events_->reads.subscribe(std::move(handler));
  }
  [[nodiscard]] Registration onForeignChange(std::function<void(std::int64_t)> handler) override {
    return events_->changes.subscribe(std::move(handler));
  }
  Task<ClipboardHandOver> handOver() override {
    // The keeper answers in a few milliseconds, unless it is just being started on a busy machine.
    static constexpr Duration patience = std::chrono::seconds(6);
    return ask(loop_, [selection = &selection_] { return selection->handOver(patience); });
  }

 protected:
  Loop& loop() { return loop_; }
  Selection& selection() { return selection_; }

  /// Runs `operation` on the thread of `where` and gives its result here.
  template <class Where, class Operation>
  Task<std::invoke_result_t<Operation&>> ask(Where& where, Operation operation) {
    return await<std::invoke_result_t<Operation&>>(
        where, [operation = std::move(operation)](auto done) mutable { done(operation()); });
  }

  /// The same for an operation that gives its result later.
  template <class Result, class Where, class Operation>
  Task<Result> await(Where& where, Operation operation) {
    auto [sender, receiver] = makeOneShot<Result>();
    std::move_only_function<void(Result)> done = [&executor = executor_,
                                                  sender = std::move(sender)](Result result) mutable {
      executor.post([result = std::move(result), sender = std::move(sender)]() mutable {
        sender.send(std::move(result));
      });
    };
    Job job = [operation = std::move(operation), done = std::move(done)]() mutable {
      operation(std::move(done));
    };
    where.enqueue(std::move(job));
    auto answer = awaitAnswer(std::move(receiver));  // only a destroyed thread drops a job
    co_return co_await answer;
  }

 private:
  Task<std::optional<std::int64_t>> replace(SharedSnapshot contents, std::optional<std::int64_t> expected,
                                            std::optional<DesktopClient> onlyReader) {
    return ask(loop_,
               [selection = &selection_, contents = std::move(contents), expected, onlyReader]() mutable {
                 return selection->replace(std::move(contents), expected, onlyReader);
               });
  }

  Executor& executor_;
  std::shared_ptr<SelectionEvents> events_;
  Loop& loop_;
  Selection& selection_;
};

}  // namespace murmel
