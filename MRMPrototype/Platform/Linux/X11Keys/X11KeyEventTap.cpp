#include "Platform/Linux/X11Keys/X11KeyEventTap.h"

#include "Platform/Linux/X11Keys/X11KeyConnection.h"

#include <optional>
#include <utility>
#include <vector>

namespace murmel {

namespace {

constexpr const char* waylandReason =
    "Wayland lets no application hear keys while another one is in front. Bind a key to the command "
    "\"murmel toggle\" in the keyboard settings of your desktop.";

bool isWayland(const X11KeyEnvironment& environment) {
  return !environment.waylandDisplay.empty() || environment.sessionType == "wayland";
}

}  // namespace

X11KeyEnvironment X11KeyEnvironment::from(const Environment& environment) {
  return {environment.value("DISPLAY").value_or(""), environment.value("WAYLAND_DISPLAY").value_or(""),
          environment.value("XDG_SESSION_TYPE").value_or("")};
}

/// The tap itself. Kept alive by whoever runs in it, so that its handler may remove it.
class X11KeyEventTap::Tap final : public std::enable_shared_from_this<Tap> {
 public:
  Tap(Executor& executor, std::unique_ptr<X11KeyConnection> connection, KeyLayout layout,
      InjectedKeyList& injectedKeys, Handler handler)
      : executor_(executor),
        connection_(std::move(connection)),
        layout_(std::move(layout)),
        translator_(injectedKeys),
        handler_(std::move(handler)) {}

  void watch() {
    const auto drainIfAlive = [weak = weak_from_this()] {
      if (const auto tap = weak.lock()) tap->drain();
    };
    watch_ = executor_.watchReadable(connection_->descriptor(), drainIfAlive);
    resync();
    // The keys that are held now must be known before the first event of another program's making.
    connection_->awaitServer();
    // What the round trips so far have read already does not make the descriptor readable.
    executor_.post(drainIfAlive);
  }

  void remove() {
    isRemoved_ = true;
    watch_.reset();
    withheldRelease_.reset();
  }

  [[nodiscard]] bool isRemoved() const { return isRemoved_; }
  [[nodiscard]] bool isUsable() const { return !connection_->isBroken(); }
  void resync() { connection_->requestPressedKeys(); }

 private:
  void drain() {
    const auto keepAlive = shared_from_this();
    while (!isRemoved_) {
      const auto event = next_ ? std::move(next_) : connection_->poll();
      reconcile(event.get());
      if (event) take(*event);
      deliver();
      // Round trips may have read further events, so the end is only where nothing was left to ask either.
      if (!event && !refreshLayout()) break;
    }
    if (isRemoved_) return;
    if (connection_->isBroken()) {
      fail();
    } else if (!translator_.isWithholdingRelease()) {
      withheldRelease_.reset();
    } else if (!withheldRelease_) {
      withheldRelease_ = executor_.after(std::chrono::milliseconds(KeyEventTranslator::repeatGapMilliseconds),
                                         [this] { tellWithheldRelease(); });
    }
  }

  void tellWithheldRelease() {
    const auto keepAlive = shared_from_this();
    withheldRelease_.reset();
    // The other half of the repeat may be here, unread.
    drain();
    if (isRemoved_) return;
    withheldRelease_.reset();
    translator_.tellWithheldRelease(layout_, pending_);
    deliver();
  }

  void take(const xcb_generic_event_t& event) {
    switch (connection_->interpret(event)) {
      case X11KeyConnection::Notice::key:
        takeKey(RawKey(connection_->rawKey));
        break;
      case X11KeyConnection::Notice::button:
        pending_.push_back({KeyEventType::buttonDown, 0, 0, false, ""});
        break;
      case X11KeyConnection::Notice::layout:
        layoutIsStale_ = true;
        break;
      case X11KeyConnection::Notice::locks:
        layout_.update(connection_->layoutState);
        translator_.locksChanged(layout_, pending_);
        break;
      case X11KeyConnection::Notice::devices:
        connection_->readDevices();
        // A device that goes, or is switched off for a suspend, lets its keys go without a word.
        resync();
        break;
      case X11KeyConnection::Notice::none:
        break;
    }
  }

  void takeKey(const RawKey& key) {
    refreshLayout();
    if (!key.goesDown) takeLocksAhead();
    if (key.keyCode < PressedKeySet().size()) translator_.consume(key, layout_, pending_);
    translator_.locksChanged(layout_, pending_);
  }

  /// A modifier that is let go may stay down by a lock, which comes right behind: between the two nothing was
  /// released for anybody.
  void takeLocksAhead() {
    if (!next_) next_ = connection_->poll();
    if (!next_ || connection_->interpret(*next_) != X11KeyConnection::Notice::locks) return;
    next_.reset();
    layout_.update(connection_->layoutState);
  }

  /// Late, because a change of layout comes as a flood of notices. Gives whether there was anything to do.
  bool refreshLayout() {
    if (!std::exchange(layoutIsStale_, false)) return false;
    if (auto layout = connection_->readLayout()) layout_ = *std::move(layout);
    resync();
    return true;
  }

  void reconcile(const xcb_generic_event_t* nextEvent) {
    if (const auto pressedKeys = connection_->pressedKeysBefore(nextEvent)) {
      translator_.reconcile(*pressedKeys, layout_, pending_);
    }
  }

  void deliver() {
    const auto events = std::exchange(pending_, {});
    for (const auto& event : events) {
      if (isRemoved_) return;
      handler_(event);
    }
  }

  void fail() {
    // A broken connection stays readable for ever.
    watch_.reset();
    withheldRelease_.reset();
    handler_({KeyEventType::tapDisabledByTimeout, 0, 0, false, ""});
  }

  Executor& executor_;
  std::unique_ptr<X11KeyConnection> connection_;
  KeyLayout layout_;
  KeyEventTranslator translator_;
  Handler handler_;
  std::vector<KeyEvent> pending_;
  XcbEvent next_;  ///< looked at already, and still to be taken
  bool layoutIsStale_ = false;
  bool isRemoved_ = false;
  Registration watch_;
  /// Runs while a release waits for a press that would make it a repeat.
  Registration withheldRelease_;
};

class X11KeyEventTap::Installed final : public InstalledKeyEventTap {
 public:
  explicit Installed(std::shared_ptr<Tap> tap) : tap_(std::move(tap)) {}
  ~Installed() override { tap_->remove(); }
  Installed(const Installed&) = delete;
  Installed& operator=(const Installed&) = delete;

  // The server never disables a tap but by breaking the connection.
  bool enable() override { return tap_->isUsable(); }

 private:
  std::shared_ptr<Tap> tap_;
};

X11KeyEventTap::X11KeyEventTap(Executor& executor, InjectedKeyList& injectedKeys,
                               X11KeyEnvironment environment)
    : executor_(executor), injectedKeys_(injectedKeys), environment_(std::move(environment)) {}

X11KeyEventTap::~X11KeyEventTap() = default;

ListenEventAccess X11KeyEventTap::permission() {
  if (isWayland(environment_)) return {false, waylandReason};
  if (const auto tap = tap_.lock(); tap && !tap->isRemoved() && tap->isUsable()) return {true, ""};
  if (environment_.display.empty()) return {false, "There is no display (DISPLAY is not set)."};
  const auto checked = X11KeyConnection::check(environment_.display);
  return checked ? ListenEventAccess{true, ""} : ListenEventAccess{false, checked.error()};
}

std::unique_ptr<InstalledKeyEventTap> X11KeyEventTap::create(Handler handler) {
  if (const auto tap = tap_.lock(); tap && !tap->isRemoved()) return nullptr;
  if (environment_.display.empty() || isWayland(environment_)) return nullptr;
  auto connection = X11KeyConnection::open(environment_.display);
  if (!connection) return nullptr;
  auto layout = (*connection)->readLayout();
  if (!layout) return nullptr;
  const auto tap = std::make_shared<Tap>(executor_, *std::move(connection), *std::move(layout), injectedKeys_,
                                         std::move(handler));
  tap->watch();
  tap_ = tap;
  return std::make_unique<Installed>(tap);
}

void X11KeyEventTap::resync() {
  if (const auto tap = tap_.lock()) tap->resync();
}

}  // namespace murmel
