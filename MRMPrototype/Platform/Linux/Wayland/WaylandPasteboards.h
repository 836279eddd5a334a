#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Platform/ClipboardPasteboard.h"
#include "Platform/Linux/Clipboard/ClipboardKeeper.h"

#include <expected>
#include <memory>
#include <string>

namespace murmel {

/// The clipboards of a Wayland desktop that lets programs without a window have them (data-control): the
/// clipboard, and what is selected where the protocol's version tells of it.
///
/// Served by a thread and a connection of its own, as on X11: other applications are not kept waiting while
/// the main thread is busy. Who reads is found out by the pipe that the text goes through. Create and destroy
/// on the main thread; coroutines that wait for an operation when this is destroyed are never resumed.
class WaylandPasteboards {
 public:
  /// `clock` stamps the reads; it, the executor and the keeper outlive this. Without a keeper the contents
  /// end with this.
  static std::expected<std::unique_ptr<WaylandPasteboards>, std::string> open(
      Executor& executor, const Clock& clock, ClipboardKeeper* keeper = nullptr);
  ~WaylandPasteboards();

  ClipboardPasteboard& general();
  /// Null where the compositor does not tell of it.
  ClipboardPasteboard* primary();

 private:
  class Worker;
  class Pasteboard;

  WaylandPasteboards();

  std::unique_ptr<Pasteboard> general_;
  std::unique_ptr<Pasteboard> primary_;
  std::unique_ptr<Worker> worker_;  // last: its thread ends before the pasteboards go
};

}  // namespace murmel
