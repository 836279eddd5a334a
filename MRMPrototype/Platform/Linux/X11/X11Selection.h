#pragma once

#include "Platform/ClipboardPasteboard.h"
#include "Platform/Linux/Clipboard/ClipboardKeeper.h"
#include "Platform/Linux/Clipboard/SelectionPasteboard.h"
#include "Platform/Linux/X11/X11EventLoop.h"
#include "Platform/Linux/X11/X11IncrementalSender.h"
#include "Platform/Linux/X11/X11ServerTime.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <xcb/xfixes.h>

namespace murmel {

/// The number of the XFixes events; nothing when the server does not tell of clipboard changes.
std::optional<std::uint8_t> firstXFixesEvent(X11Connection& connection);

/// One selection (CLIPBOARD or PRIMARY): who owns it, how often that has changed, and its contents while we
/// own it, which it serves to those for whom they are meant. On the event loop's thread.
class X11Selection {
 public:
  /// `keeper`, if any, is told what is served, and outlives this.
  X11Selection(X11EventLoop& loop, X11IncrementalSender& sender, const Clock& clock, std::string name,
               SelectionObserver observer, ClipboardKeeper* keeper = nullptr);

  /// What stands on the selection, after everything that the server has told so far and a round trip to it.
  struct Standing {
    std::int64_t changeCount = 0;
    SharedSnapshot ours;  ///< null when the selection is not ours
    xcb_window_t owner = XCB_NONE;
  };
  Standing standing();
  std::int64_t changeCount() { return standing().changeCount; }

  /// Takes the selection, or clears it when there is no value. With `expected` only while the count is that;
  /// with `onlyReader` the plain text is for that program alone.
  std::optional<std::int64_t> replace(SharedSnapshot contents, std::optional<std::int64_t> expected,
                                      std::optional<DesktopClient> onlyReader = std::nullopt);
  bool serveEverybody(std::int64_t changeCount);

  /// Takes the selection in the place of a client that owned it since then. False when somebody else has
  /// become the owner in the meantime.
  bool adopt(SharedSnapshot contents, xcb_timestamp_t ownedSince);

  /// Lets the keeper serve what is served here, to everybody. True when it does.
  ClipboardHandOver handOver(Duration limit);

  void requested(const xcb_selection_request_event_t& event);
  void ownerChanged(const xcb_xfixes_selection_notify_event_t& event);
  void propertyChanged(const xcb_property_notify_event_t& event);

 private:
  [[nodiscard]] std::optional<xcb_window_t> ownerNow();
  void serve(SharedSnapshot contents, xcb_timestamp_t since);
  void serveNothing();
  [[nodiscard]] bool take(xcb_timestamp_t time, bool clearing);
  /// Who asks, and where the answer goes.
  struct Request {
    xcb_window_t requestor = XCB_NONE;
    DesktopClient reader;
  };
  [[nodiscard]] bool mayHaveText(const DesktopClient& reader) const;
  bool deliver(const Request& request, xcb_atom_t target, xcb_atom_t property);
  bool deliverSeveral(const Request& request, xcb_atom_t property);
  bool deliverValue(const Request& request, const ClipboardSnapshot::Value& value, xcb_atom_t property);
  [[nodiscard]] std::vector<xcb_atom_t> offeredAtoms(bool withText);
  void report(const DesktopClient& reader, ClipboardRead::Kind kind, std::int64_t changeCount);

  X11EventLoop& loop_;
  X11Connection& connection_;
  X11IncrementalSender& sender_;
  const Clock& clock_;
  std::string name_;
  SelectionObserver observer_;
  ClipboardKeeper* keeper_;
  xcb_atom_t atom_;
  xcb_window_t window_;
  X11ServerTime time_;

  std::int64_t changeCount_ = 1;
  SharedSnapshot contents_;
  std::optional<DesktopClient> onlyReader_;  ///< of the text; nothing: everybody
  std::map<xcb_atom_t, const ClipboardSnapshot::Value*> values_;
  xcb_timestamp_t ownedSince_ = 0;
  std::optional<xcb_timestamp_t> clearedAt_;
};

}  // namespace murmel
