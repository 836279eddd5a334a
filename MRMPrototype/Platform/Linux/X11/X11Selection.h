#pragma once

#include "Platform/ClipboardPasteboard.h"
#include "Platform/Linux/X11/X11EventLoop.h"
#include "Platform/Linux/X11/X11IncrementalSender.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <xcb/xfixes.h>

namespace murmel {

/// One selection (CLIPBOARD or PRIMARY): who owns it, how often that has changed, and its contents while we
/// own it, which it serves to everybody who asks. On the event loop's thread.
class X11Selection {
 public:
  struct Observer {
    std::function<void(const ClipboardRead&)> read;
    std::function<void(std::int64_t changeCount)> changedByAnother;
  };

  X11Selection(X11EventLoop& loop, X11IncrementalSender& sender, const Clock& clock, std::string name,
               Observer observer);

  [[nodiscard]] xcb_atom_t atom() const { return atom_; }
  [[nodiscard]] bool isOurs() const { return contents_ != nullptr; }
  /// What we serve; null when the selection is not ours.
  [[nodiscard]] const std::shared_ptr<const ClipboardSnapshot>& contents() const { return contents_; }

  /// The count after everything that the server has told so far, and after a round trip to it.
  std::int64_t changeCount();
  /// The count without asking.
  [[nodiscard]] std::int64_t knownChangeCount() const { return changeCount_; }

  /// Takes the selection, or clears it when there is no value. With `expected` only while the count is that.
  std::optional<std::int64_t> replace(ClipboardSnapshot contents, std::optional<std::int64_t> expected);

  /// Offers our contents to the desktop's clipboard manager. True when it has taken them.
  bool handOver(Duration limit);

  /// The server's time now, for requests that must not be confused with older ones.
  xcb_timestamp_t serverTime();

  void requested(const xcb_selection_request_event_t& event);
  void ownerChanged(const xcb_xfixes_selection_notify_event_t& event);
  void notified(const xcb_selection_notify_event_t& event);
  void propertyChanged(const xcb_property_notify_event_t& event);

 private:
  [[nodiscard]] std::optional<xcb_window_t> ownerNow();
  [[nodiscard]] bool take(xcb_timestamp_t time, bool clearing);
  bool deliver(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
  bool deliverSeveral(xcb_window_t requestor, xcb_atom_t property);
  bool deliverValue(xcb_window_t requestor, const ClipboardSnapshot::Value& value, xcb_atom_t property);
  [[nodiscard]] std::vector<xcb_atom_t> offeredAtoms();
  void reportRead(xcb_window_t requestor, const std::string& type, std::int64_t changeCount);

  X11EventLoop& loop_;
  X11Connection& connection_;
  X11IncrementalSender& sender_;
  const Clock& clock_;
  std::string name_;
  Observer observer_;
  xcb_atom_t atom_;
  xcb_window_t window_;

  std::int64_t changeCount_ = 1;
  std::shared_ptr<const ClipboardSnapshot> contents_;
  std::map<xcb_atom_t, const ClipboardSnapshot::Value*> values_;
  xcb_timestamp_t ownedSince_ = 0;
  std::optional<xcb_timestamp_t> clearedAt_;
  std::optional<xcb_timestamp_t> observedTime_;
  std::optional<bool> handOverAnswer_;
};

}  // namespace murmel
