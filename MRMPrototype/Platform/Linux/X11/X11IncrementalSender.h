#pragma once

#include "Foundation/Async/Clock.h"
#include "Platform/ClipboardSnapshot.h"
#include "Platform/Linux/X11/X11Connection.h"

#include <cstddef>
#include <functional>
#include <list>
#include <memory>

namespace murmel {

/// Sends selection data that is too large for one property, piece by piece, each when the receiver has taken
/// the one before (ICCCM, "INCR Properties"). A transfer keeps its own hold on the data: it goes on when the
/// selection has changed. On the event loop's thread.
class X11IncrementalSender {
 public:
  /// Larger values are sent in pieces of this size. Servers accept far more in one request, but hold it
  /// twice.
  static constexpr std::size_t pieceSize = std::size_t{256} * 1024;
  /// A receiver that takes nothing for so long is given up.
  static constexpr Duration patience = std::chrono::seconds(15);

  explicit X11IncrementalSender(X11Connection& connection) : connection_(connection) {}

  /// Writes the announcement to the receiver's property. `onDelivered` runs when the last piece was taken.
  void begin(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
             std::shared_ptr<const ClipboardSnapshot> holder, const ClipboardSnapshot::Value& value,
             Instant now, std::function<void()> onDelivered);

  void propertyChanged(const xcb_property_notify_event_t& event, Instant now);
  void windowDestroyed(xcb_window_t window);
  /// Whether any are left to look after.
  bool dropAbandoned(Instant now);

 private:
  struct Transfer {
    xcb_window_t requestor;
    xcb_atom_t property;
    xcb_atom_t type;
    std::shared_ptr<const ClipboardSnapshot> holder;
    const ClipboardSnapshot::Value* value;
    std::size_t sent = 0;
    bool ended = false;
    Instant lastProgress;
    std::function<void()> onDelivered;
  };

  void end(std::list<Transfer>::iterator transfer);

  X11Connection& connection_;
  std::list<Transfer> transfers_;
};

}  // namespace murmel
