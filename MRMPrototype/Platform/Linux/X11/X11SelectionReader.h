#pragma once

#include "Platform/ClipboardPasteboard.h"
#include "Platform/Linux/X11/X11EventLoop.h"
#include "Platform/Linux/X11/X11Selection.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// Reads what another application offers on a selection. Bounded in time, whatever the owner does. On the
/// event loop's thread, one read at a time.
class X11SelectionReader {
 public:
  /// For everything together.
  static constexpr Duration patience = std::chrono::milliseconds(1'500);
  /// For an owner that does not go on with one form, so that the others still get their turn.
  static constexpr Duration stallPatience = std::chrono::milliseconds(400);
  /// What is kept in memory at most. A screenshot of two large screens is a tenth of it.
  static constexpr std::size_t mostBytes = std::size_t{256} * 1024 * 1024;

  explicit X11SelectionReader(X11EventLoop& loop) : loop_(loop), connection_(loop.connection()) {}

  ClipboardCapture capture(X11Selection& selection);
  std::optional<std::string> data(X11Selection& selection, const std::string& type);

  void notified(const xcb_selection_notify_event_t& event);
  void propertyChanged(const xcb_property_notify_event_t& event);

 private:
  enum class Outcome { delivered, refused, stalled };
  struct Property {
    Outcome outcome = Outcome::stalled;
    ClipboardSnapshot::Value value;
  };

  void begin(Instant deadline);
  void end();
  ClipboardCapture captureOnce(X11Selection& selection, Instant deadline);
  /// Nothing when the owner does not answer at all.
  std::optional<std::vector<std::string>> offeredTypes(X11Selection& selection);
  Property convert(X11Selection& selection, const std::string& type, Duration stall);
  Property receive(xcb_atom_t property, Duration stall);
  bool receivePieces(xcb_atom_t property, Duration stall, ClipboardSnapshot::Value& value);
  [[nodiscard]] Duration bounded(Duration stall) const;

  X11EventLoop& loop_;
  X11Connection& connection_;
  xcb_window_t requestor_ = XCB_NONE;
  std::uint32_t conversions_ = 0;
  std::size_t bytesLeft_ = 0;
  Instant deadline_;
  xcb_atom_t awaited_ = XCB_NONE;  ///< the property of the conversion that is under way
  std::optional<xcb_atom_t> answer_;
  bool newPiece_ = false;
};

}  // namespace murmel
