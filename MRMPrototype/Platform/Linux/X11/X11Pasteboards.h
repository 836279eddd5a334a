#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Platform/ClipboardPasteboard.h"
#include "Platform/Linux/Clipboard/ClipboardKeeper.h"

#include <expected>
#include <memory>
#include <string>

namespace murmel {

/// The clipboards of an X desktop: CLIPBOARD, and PRIMARY with what is selected.
///
/// All work is done on a thread of its own with a connection of its own, so that other applications, and this
/// one's own windows, are served while the main thread is busy; what others own is read on further threads,
/// so that an owner that does not answer holds up nobody. Create and destroy on the main thread; coroutines
/// that wait for an operation when this is destroyed are never resumed. What stands on CLIPBOARD is told to
/// the keeper, who serves it afterwards.
class X11Pasteboards {
 public:
  /// `clock` stamps the reads; it, the executor and the keeper outlive this. `display` empty: that of the
  /// environment. Without a keeper the contents end with this.
  static std::expected<std::unique_ptr<X11Pasteboards>, std::string> open(Executor& executor,
                                                                          const Clock& clock,
                                                                          const std::string& display = {},
                                                                          ClipboardKeeper* keeper = nullptr);
  ~X11Pasteboards();

  ClipboardPasteboard& general();
  ClipboardPasteboard& primary();

 private:
  class Worker;
  class Pasteboard;

  X11Pasteboards();

  std::unique_ptr<Pasteboard> general_;
  std::unique_ptr<Pasteboard> primary_;
  std::unique_ptr<Worker> worker_;  // last: its thread ends before the pasteboards go
};

}  // namespace murmel
