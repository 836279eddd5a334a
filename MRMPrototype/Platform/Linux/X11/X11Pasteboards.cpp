#include "Platform/Linux/X11/X11Pasteboards.h"

#include "Platform/Linux/Clipboard/SelectionPasteboard.h"
#include "Platform/Linux/X11/X11EventLoop.h"
#include "Platform/Linux/X11/X11IncrementalSender.h"
#include "Platform/Linux/X11/X11Selection.h"
#include "Platform/Linux/X11/X11SelectionReader.h"

#include <array>
#include <type_traits>
#include <utility>

#include <xcb/xfixes.h>

namespace murmel {

/// Everything that lives on the thread.
class X11Pasteboards::Worker {
 public:
  Worker(std::unique_ptr<X11Connection> connection, Executor& executor, const Clock& clock,
         const std::array<std::shared_ptr<SelectionEvents>, 2>& events, ClipboardKeeper* keeper,
         std::uint8_t fixesEvent)
      : loop_(std::move(connection)),
        sender_(loop_.connection()),
        general_(loop_, sender_, clock, "CLIPBOARD", SelectionEvents::observer(executor, events[0]), keeper),
        primary_(loop_, sender_, clock, "PRIMARY", SelectionEvents::observer(executor, events[1])),
        fixesEvent_(fixesEvent) {
    loop_.start([this](const xcb_generic_event_t& event) { handle(event); },
                [this] { return sender_.dropAbandoned(loop_.now()); });
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

/// The main thread's end of one selection; what others own is read on the reader's thread.
class X11Pasteboards::Pasteboard final : public SelectionPasteboard<X11EventLoop, X11Selection> {
 public:
  Pasteboard(Executor& executor, std::shared_ptr<SelectionEvents> events, X11EventLoop& loop,
             X11Selection& selection, std::unique_ptr<X11SelectionReader> reader)
      : SelectionPasteboard(executor, std::move(events), loop, selection), reader_(std::move(reader)) {}

  Task<ClipboardCapture> capture() override {
    auto looking = standing();
    const auto standing = co_await looking;
    if (standing.ours) co_return ClipboardCapture{standing.ours, true, standing.changeCount};
    auto reading = ask(reader_->loop(),
                       [reader = reader_.get(), owner = standing.owner] { return reader->capture(owner); });
    auto captured = co_await reading;
    captured.changeCount = standing.changeCount;
    co_return captured;
  }

  Task<std::optional<std::string>> data(std::string type) override {
    auto looking = standing();
    const auto standing = co_await looking;
    if (standing.ours) {
      const auto* value = standing.ours->find(type);
      co_return value == nullptr ? std::nullopt : std::optional(value->data);
    }
    auto reading =
        ask(reader_->loop(), [reader = reader_.get(), type = std::move(type)] { return reader->data(type); });
    auto bytes = co_await reading;
    co_return bytes;
  }

 private:
  Task<X11Selection::Standing> standing() {
    return ask(loop(), [selection = &selection()] { return selection->standing(); });
  }

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
  const std::array events{std::make_shared<SelectionEvents>(), std::make_shared<SelectionEvents>()};
  auto worker =
      std::make_unique<Worker>(*std::move(connection), executor, clock, events, keeper, *fixesEvent);
  std::unique_ptr<X11Pasteboards> pasteboards(new X11Pasteboards());
  const auto pasteboardOf = [&](X11Selection& selection, const char* name, std::size_t index,
                                std::unique_ptr<Pasteboard>& made) {
    auto forReading = X11Connection::open(display);
    if (!forReading) return false;
    auto reader = std::make_unique<X11SelectionReader>(*std::move(forReading), name);
    made =
        std::make_unique<Pasteboard>(executor, events[index], worker->loop(), selection, std::move(reader));
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
