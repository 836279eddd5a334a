#include "Platform/Linux/Wayland/WaylandPasteboards.h"

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Signal.h"
#include "Platform/Linux/Wayland/DataControlDevice.h"
#include "Platform/Linux/Wayland/WaylandLoop.h"

#include <coroutine>
#include <type_traits>
#include <utility>

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
DataControlSelection::Observer observerFor(Executor& executor,
                                           const std::shared_ptr<Subscriptions>& subscriptions) {
  const std::weak_ptr weak(subscriptions);
  DataControlSelection::Observer observer;
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
class WaylandPasteboards::Worker {
 public:
  explicit Worker(std::unique_ptr<WaylandConnection> connection) : loop(std::move(connection)) {}
  ~Worker() { loop.stop(); }  // before what its events reach goes
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  WaylandLoop loop;
  std::unique_ptr<DataControlDevice> device;
};

/// The main thread's end of one selection.
class WaylandPasteboards::Pasteboard final : public ClipboardPasteboard {
 public:
  Pasteboard(Executor& executor, std::shared_ptr<Subscriptions> subscriptions, WaylandLoop& loop,
             DataControlSelection& selection)
      : executor_(executor), subscriptions_(std::move(subscriptions)), loop_(loop), selection_(selection) {}

  Task<std::int64_t> changeCount() override {
    auto* selection = &selection_;
    return ask([selection] { return selection->changeCount(); });
  }
  Task<ClipboardCapture> capture() override {
    auto* selection = &selection_;
    return await<ClipboardCapture>([selection](auto done) mutable { selection->capture(std::move(done)); });
  }
  Task<std::optional<std::string>> data(std::string type) override {
    auto* selection = &selection_;
    return await<std::optional<std::string>>(
        [selection, type = std::move(type)](auto done) mutable { selection->data(type, std::move(done)); });
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
    return ask([selection, changeCount] { return selection->serveEverybody(changeCount); });
  }
  [[nodiscard]] Registration onRead(std::function<void(const ClipboardRead&)> handler) override {
    return subscriptions_->reads.subscribe(std::move(handler));
  }
  [[nodiscard]] Registration onForeignChange(std::function<void(std::int64_t)> handler) override {
    return subscriptions_->changes.subscribe(std::move(handler));
  }
  Task<bool> handOver() override {
    auto* selection = &selection_;
    return ask([selection] { return selection->handOver(handOverPatience); });
  }

 private:
  Task<std::optional<std::int64_t>> replace(SharedSnapshot contents, std::optional<std::int64_t> expected,
                                            std::optional<DesktopClient> onlyReader) {
    auto* selection = &selection_;
    return ask([selection, contents = std::move(contents), expected, onlyReader]() mutable {
      return selection->replace(std::move(contents), expected, onlyReader);
    });
  }

  /// Runs `operation` on the thread and gives its result here.
  template <class Operation>
  Task<std::invoke_result_t<Operation&>> ask(Operation operation) {
    return await<std::invoke_result_t<Operation&>>(
        [operation = std::move(operation)](auto done) mutable { done(operation()); });
  }

  /// The same for an operation that gives its result later.
  template <class Result, class Operation>
  Task<Result> await(Operation operation) {
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
    loop_.enqueue(std::move(job));
    auto result = co_await receiver;
    // Only a destroyed thread drops a job; nobody can answer then.
    if (!result) co_await std::suspend_always{};
    co_return *std::move(result);
  }

  Executor& executor_;
  std::shared_ptr<Subscriptions> subscriptions_;
  WaylandLoop& loop_;
  DataControlSelection& selection_;
};

std::expected<std::unique_ptr<WaylandPasteboards>, std::string> WaylandPasteboards::open(
    Executor& executor, const Clock& clock, ClipboardKeeper* keeper) {
  auto connection = WaylandConnection::open();
  if (!connection) return std::unexpected(connection.error());
  const auto general = std::make_shared<Subscriptions>();
  const auto primary = std::make_shared<Subscriptions>();
  auto worker = std::make_unique<Worker>(*std::move(connection));
  worker->device = DataControlDevice::open(worker->loop, clock, observerFor(executor, general),
                                           observerFor(executor, primary), keeper);
  if (!worker->device) {
    return std::unexpected("The compositor lets no program without a window have the clipboard.");
  }
  std::unique_ptr<WaylandPasteboards> pasteboards(new WaylandPasteboards());
  pasteboards->general_ =
      std::make_unique<Pasteboard>(executor, general, worker->loop, worker->device->clipboard());
  if (auto* selection = worker->device->primary())
    pasteboards->primary_ = std::make_unique<Pasteboard>(executor, primary, worker->loop, *selection);
  worker->loop.start();
  pasteboards->worker_ = std::move(worker);
  return pasteboards;
}

WaylandPasteboards::WaylandPasteboards() = default;
WaylandPasteboards::~WaylandPasteboards() = default;

ClipboardPasteboard& WaylandPasteboards::general() {
  return *general_;
}

ClipboardPasteboard* WaylandPasteboards::primary() {
  return primary_.get();
}

}  // namespace murmel
