#include "Platform/Linux/X11/X11Pasteboards.h"

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Signal.h"
#include "Platform/Linux/X11/X11EventLoop.h"
#include "Platform/Linux/X11/X11IncrementalSender.h"
#include "Platform/Linux/X11/X11Selection.h"
#include "Platform/Linux/X11/X11SelectionReader.h"

#include <array>
#include <coroutine>
#include <type_traits>
#include <utility>

#include <xcb/xfixes.h>

namespace murmel {

namespace {

/// The keeper answers in a few milliseconds.
constexpr Duration handOverPatience = std::chrono::seconds(1);

/// What the main thread is told of one selection.
struct Subscriptions {
  Signal<const ClipboardRead&> reads;
  Signal<std::int64_t> changes;
};

/// Carries what the thread observes to the main thread, if anybody is still there.
X11Selection::Observer observerFor(Executor& executor, const std::shared_ptr<Subscriptions>& subscriptions) {
  const std::weak_ptr weak(subscriptions);
  X11Selection::Observer observer;
  observer.read = [&executor, weak](const ClipboardRead& read) {
    executor.post([weak, read] {
      if (const auto alive = weak.lock()) alive->reads.emit(read);
    });
  };
  observer.changedByAnother = [&executor, weak](std::int64_t changeCount) {
    executor.post([weak, changeCount] {
      if (const auto alive = weak.lock()) alive->changes.emit(changeCount);
    });
  };
  return observer;
}

}  // namespace

/// Everything that lives on the thread.
class X11Pasteboards::Worker {
 public:
  Worker(std::unique_ptr<X11Connection> connection, Executor& executor, const Clock& clock,
         const std::array<std::shared_ptr<Subscriptions>, 2>& subscriptions, ClipboardKeeper* keeper,
         std::uint8_t fixesEvent)
      : loop_(std::move(connection)),
        sender_(loop_.connection()),
        general_(loop_, sender_, clock, "CLIPBOARD", observerFor(executor, subscriptions[0]), keeper),
        primary_(loop_, sender_, clock, "PRIMARY", observerFor(executor, subscriptions[1])),
        fixesEvent_(fixesEvent) {
    loop_.start([this](const xcb_generic_event_t& event) { handle(event); },
                [this] { sender_.dropAbandoned(loop_.now()); });
  }

  ~Worker() { loop_.stop(); }  // before what its events reach goes
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  X11EventLoop& loop() { return loop_; }
  X11Selection& general() { return general_; }
  X11Selection& primary() { return primary_; }

 private:
  void handle(const xcb_generic_event_t& event) {
    constexpr std::uint8_t sentByAClient = 0x80;
    const auto kind = static_cast<std::uint8_t>(event.response_type & ~sentByAClient);
    const auto as = [&event]<class T>(std::type_identity<T>) -> const T& {
      return reinterpret_cast<const T&>(event);
    };
    if (kind == fixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
      const auto& change = as(std::type_identity<xcb_xfixes_selection_notify_event_t>{});
      general_.ownerChanged(change);
      primary_.ownerChanged(change);
      return;
    }
    switch (kind) {
      case XCB_SELECTION_REQUEST: {
        const auto& request = as(std::type_identity<xcb_selection_request_event_t>{});
        general_.requested(request);
        primary_.requested(request);
        break;
      }
      case XCB_PROPERTY_NOTIFY: {
        const auto& change = as(std::type_identity<xcb_property_notify_event_t>{});
        general_.propertyChanged(change);
        primary_.propertyChanged(change);
        sender_.propertyChanged(change, loop_.now());
        break;
      }
      case XCB_DESTROY_NOTIFY:
        sender_.windowDestroyed(as(std::type_identity<xcb_destroy_notify_event_t>{}).window);
        break;
      default:
        // Errors too: a reader that went away while it was served is none of our concern.
        break;
    }
  }

  X11EventLoop loop_;
  X11IncrementalSender sender_;
  X11Selection general_;
  X11Selection primary_;
  std::uint8_t fixesEvent_;
};

/// The main thread's end of one selection.
class X11Pasteboards::Pasteboard final : public ClipboardPasteboard {
 public:
  Pasteboard(Executor& executor, std::shared_ptr<Subscriptions> subscriptions, X11EventLoop& loop,
             X11Selection& selection, std::unique_ptr<X11SelectionReader> reader)
      : executor_(executor),
        subscriptions_(std::move(subscriptions)),
        loop_(loop),
        selection_(selection),
        reader_(std::move(reader)) {}

  Task<std::int64_t> changeCount() override {
    auto* selection = &selection_;
    return ask(loop_, [selection] { return selection->changeCount(); });
  }

  Task<ClipboardCapture> capture() override {
    auto* selection = &selection_;
    auto looking = ask(loop_, [selection] { return selection->standing(); });
    const auto standing = co_await looking;
    if (standing.ours) co_return ClipboardCapture{standing.ours, true, standing.changeCount};
    auto* reader = reader_.get();
    auto reading = ask(reader_->loop(), [reader, owner = standing.owner] { return reader->capture(owner); });
    auto captured = co_await reading;
    captured.changeCount = standing.changeCount;
    co_return captured;
  }

  Task<std::optional<std::string>> data(std::string type) override {
    auto* selection = &selection_;
    auto looking = ask(loop_, [selection] { return selection->standing(); });
    const auto standing = co_await looking;
    if (standing.ours) {
      const auto* value = standing.ours->find(type);
      co_return value == nullptr ? std::nullopt : std::optional(value->data);
    }
    auto* reader = reader_.get();
    auto reading = ask(reader_->loop(), [reader, type = std::move(type)] { return reader->data(type); });
    auto bytes = co_await reading;
    co_return bytes;
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
    auto* selection = &selection_;
    return ask(loop_, [selection, changeCount] { return selection->serveEverybody(changeCount); });
  }

  [[nodiscard]] Registration onRead(std::function<void(const ClipboardRead&)> handler) override {
    return subscriptions_->reads.subscribe(std::move(handler));
  }

  [[nodiscard]] Registration onForeignChange(std::function<void(std::int64_t)> handler) override {
    return subscriptions_->changes.subscribe(std::move(handler));
  }

  Task<bool> handOver() override {
    auto* selection = &selection_;
    return ask(loop_, [selection] { return selection->handOver(handOverPatience); });
  }

 private:
  Task<std::optional<std::int64_t>> replace(SharedSnapshot contents, std::optional<std::int64_t> expected,
                                            std::optional<DesktopClient> onlyReader) {
    auto* selection = &selection_;
    return ask(loop_, [selection, contents = std::move(contents), expected, onlyReader]() mutable {
      return selection->replace(std::move(contents), expected, onlyReader);
    });
  }

  /// Runs `operation` on the loop's thread and gives its result here.
  template <class Operation>
  Task<std::invoke_result_t<Operation&>> ask(X11EventLoop& loop, Operation operation) {
    using Result = std::invoke_result_t<Operation&>;
    auto [sender, receiver] = makeOneShot<Result>();
    Job job = [&executor = executor_, operation = std::move(operation),
               sender = std::move(sender)]() mutable {
      executor.post(
          [result = operation(), sender = std::move(sender)]() mutable { sender.send(std::move(result)); });
    };
    loop.enqueue(std::move(job));
    auto result = co_await receiver;
    // Only a destroyed thread drops a job; nobody can answer then.
    if (!result) co_await std::suspend_always{};
    co_return *std::move(result);
  }

  Executor& executor_;
  std::shared_ptr<Subscriptions> subscriptions_;
  X11EventLoop& loop_;
  X11Selection& selection_;
  std::unique_ptr<X11SelectionReader> reader_;
};

std::expected<std::unique_ptr<X11Pasteboards>, std::string> X11Pasteboards::open(Executor& executor,
                                                                                 const Clock& clock,
                                                                                 const std::string& display,
                                                                                 ClipboardKeeper* keeper) {
  auto connection = X11Connection::open(display);
  if (!connection) return std::unexpected(connection.error());
  const auto fixesEvent = firstXFixesEvent(**connection);
  if (!fixesEvent)
    return std::unexpected(std::string("The X server does not tell of clipboard changes (XFixes)."));
  const std::array subscriptions{std::make_shared<Subscriptions>(), std::make_shared<Subscriptions>()};
  auto worker =
      std::make_unique<Worker>(*std::move(connection), executor, clock, subscriptions, keeper, *fixesEvent);
  std::unique_ptr<X11Pasteboards> pasteboards(new X11Pasteboards());
  const auto pasteboardOf = [&](X11Selection& selection, const char* name, std::size_t index,
                                std::unique_ptr<Pasteboard>& made) {
    auto forReading = X11Connection::open(display);
    if (!forReading) return false;
    auto reader = std::make_unique<X11SelectionReader>(*std::move(forReading), name);
    made = std::make_unique<Pasteboard>(executor, subscriptions[index], worker->loop(), selection,
                                        std::move(reader));
    return true;
  };
  if (!pasteboardOf(worker->general(), "CLIPBOARD", 0, pasteboards->general_) ||
      !pasteboardOf(worker->primary(), "PRIMARY", 1, pasteboards->primary_))
    return std::unexpected(std::string("The X server cannot be reached."));
  pasteboards->worker_ = std::move(worker);
  return pasteboards;
}

X11Pasteboards::X11Pasteboards() = default;
X11Pasteboards::~X11Pasteboards() = default;

ClipboardPasteboard& X11Pasteboards::general() {
  return *general_;
}

ClipboardPasteboard& X11Pasteboards::primary() {
  return *primary_;
}

}  // namespace murmel
