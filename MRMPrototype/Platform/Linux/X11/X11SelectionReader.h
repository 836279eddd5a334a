#pragma once

#include "Platform/ClipboardPasteboard.h"
#include "Platform/Linux/X11/X11EventLoop.h"
#include "Platform/Linux/X11/X11ServerTime.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <xcb/xfixes.h>

namespace murmel {

/// Reads what another application offers on one selection, on a thread and a connection of its own: an owner
/// that takes seconds to make its forms holds up nobody. Everything is bounded in time, whatever the owner
/// does.
class X11SelectionReader {
 public:
  /// For everything together. Nobody waits for it: a dictation takes seconds, too.
  static constexpr Duration patience = std::chrono::seconds(30);
  /// For one form. Owners make pictures only when they are asked, one after another.
  static constexpr Duration formPatience = std::chrono::seconds(10);
  /// For what an owner is about to deliver when the selection is taken from it.
  static constexpr Duration lastFormPatience = std::chrono::milliseconds(1'500);
  /// For a single form that somebody waits for.
  static constexpr Duration dataPatience = std::chrono::milliseconds(1'500);
  /// What is kept in memory at most: all eighteen forms in which some offer a screenshot of a large screen.
  static constexpr std::size_t mostBytes = std::size_t{512} * 1024 * 1024;

  X11SelectionReader(std::unique_ptr<X11Connection> connection, const std::string& selection);
  ~X11SelectionReader() { loop_.stop(); }  // before what its events reach goes
  X11SelectionReader(const X11SelectionReader&) = delete;
  X11SelectionReader& operator=(const X11SelectionReader&) = delete;

  /// What follows is for jobs of this loop.
  X11EventLoop& loop() { return loop_; }
  /// Everything that `owner` offers, as long as it is the owner.
  ClipboardCapture capture(xcb_window_t owner);
  std::optional<std::string> data(const std::string& type);

 private:
  enum class Outcome { delivered, refused, stalled };
  struct Property {
    Outcome outcome = Outcome::stalled;
    ClipboardSnapshot::Value value;
  };

  void handle(const xcb_generic_event_t& event);
  void ownerChanged(const xcb_xfixes_selection_notify_event_t& event);
  void begin(Duration limit);
  void end();
  [[nodiscard]] xcb_window_t ownerNow();
  /// Nothing when the owner does not answer at all.
  std::optional<std::vector<std::string>> offeredTypes();
  Property convert(const std::string& type);
  Property receive(xcb_atom_t property);
  bool receivePieces(xcb_atom_t property, ClipboardSnapshot::Value& value);
  bool await(const std::function<bool()>& condition);

  X11EventLoop loop_;
  X11Connection& connection_;
  xcb_atom_t selection_;
  xcb_window_t window_;  ///< hears of new owners
  std::uint8_t fixesEvent_;

  xcb_window_t requestor_ = XCB_NONE;
  std::optional<X11ServerTime> time_;
  std::uint32_t conversions_ = 0;
  std::size_t bytesLeft_ = 0;
  Instant deadline_;
  std::optional<Instant> lastDelivery_;  ///< the selection has another owner: nothing more comes after this
  xcb_atom_t awaited_ = XCB_NONE;        ///< the property of the conversion that is under way
  std::optional<xcb_atom_t> answer_;
  bool newPiece_ = false;
};

}  // namespace murmel
