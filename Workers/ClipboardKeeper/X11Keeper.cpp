#include "Platform/Linux/X11/X11EventLoop.h"
#include "Platform/Linux/X11/X11IncrementalSender.h"
#include "Platform/Linux/X11/X11Selection.h"
#include "Workers/ClipboardKeeper/Keeper.h"

#include <future>
#include <utility>

namespace murmel {

namespace {

class X11Keeper final : public Keeper {
 public:
  X11Keeper(std::unique_ptr<X11Connection> connection, std::uint8_t fixesEvent)
      : loop_(std::move(connection)),
        sender_(loop_.connection()),
        fixesEvent_(fixesEvent),
        selection_(
            loop_, sender_, clock_, "CLIPBOARD",
            {.read = [](const ClipboardRead&) {}, .changedByAnother = [this](std::int64_t) { lost(); }}) {}

  void start() override {
    loop_.start([this](const xcb_generic_event_t& event) { handle(event); },
                [this] {
                  if (loop_.connection().hasFailed()) displayEnded();
                  return sender_.dropAbandoned(loop_.now());
                });
  }
  ~X11Keeper() override { loop_.stop(); }
  X11Keeper(const X11Keeper&) = delete;
  X11Keeper& operator=(const X11Keeper&) = delete;

  bool take() override {
    std::promise<bool> answer;
    auto answered = answer.get_future();
    loop_.enqueue([this, &answer] {
      serving_ = selection_.adopt(shared(std::move(kept_.contents)), kept_.ownedSince);
      answer.set_value(serving_);
    });
    return answered.get();
  }

 private:
  void handle(const xcb_generic_event_t& event) {
    constexpr std::uint8_t sentByAClient = 0x80;
    const auto kind = static_cast<std::uint8_t>(event.response_type & ~sentByAClient);
    if (kind == fixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
      selection_.ownerChanged(reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event));
    } else if (kind == XCB_SELECTION_REQUEST) {
      selection_.requested(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    } else if (kind == XCB_PROPERTY_NOTIFY) {
      const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      selection_.propertyChanged(change);
      sender_.propertyChanged(change, loop_.now());
    } else if (kind == XCB_DESTROY_NOTIFY) {
      sender_.windowDestroyed(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
    }
  }

  SystemClock clock_;
  X11EventLoop loop_;
  X11IncrementalSender sender_;
  std::uint8_t fixesEvent_;
  X11Selection selection_;
};

}  // namespace

std::unique_ptr<Keeper> openX11Keeper() {
  auto connection = X11Connection::open();
  if (!connection) return nullptr;
  const auto fixesEvent = firstXFixesEvent(**connection);
  if (!fixesEvent) return nullptr;
  return std::make_unique<X11Keeper>(*std::move(connection), *fixesEvent);
}

}  // namespace murmel
