#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Task.h"
#include "Foundation/Registration.h"
#include "Platform/ClipboardSnapshot.h"
#include "Platform/DesktopClient.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace murmel {

struct ClipboardCapture {
  ClipboardSnapshot contents;
  /// False when the owner offered more than it delivered in the time it was given.
  bool complete = true;
};

/// Somebody took one form of the contents that this application had put on the clipboard.
struct ClipboardRead {
  std::int64_t changeCount = 0;  ///< of the contents that were read
  bool isText = false;           ///< a form of the plain text, not a picture or the list of forms
  DesktopClient reader;
  Instant at{};
};

/// One clipboard of the desktop. Main thread; operations run in the order in which they were first awaited,
/// and one that was begun is carried out even when its task is destroyed.
class ClipboardPasteboard {
 public:
  virtual ~ClipboardPasteboard() = default;

  /// A number that is different after every change of the contents, whoever made it.
  virtual Task<std::int64_t> changeCount() = 0;

  /// Everything on the clipboard. Owners that are dead, slow or stall in the middle cost at most 1.5 s; what
  /// they delivered by then is in the result.
  virtual Task<ClipboardCapture> capture() = 0;

  /// One form of the contents; nothing when it is not offered or not delivered within 1.5 s.
  virtual Task<std::optional<std::string>> data(std::string type) = 0;

  /// Replaces the contents, or clears the clipboard when there is no value in `contents`. The answer is the
  /// change count right after, nothing when the clipboard could not be taken.
  virtual Task<std::optional<std::int64_t>> mrmReplace(ClipboardSnapshot contents) = 0;

  /// The same, but only while the change count is still `expected`, in one step: contents that somebody else
  /// writes in the meantime are never overwritten.
  virtual Task<std::optional<std::int64_t>> mrmReplaceIfUnchanged(ClipboardSnapshot contents,
                                                                  std::int64_t expected) = 0;

  /// Every read of contents that this application has written.
  [[nodiscard]] virtual Registration onRead(std::function<void(const ClipboardRead&)> handler) = 0;
  /// Every change that somebody else made, with the new change count.
  [[nodiscard]] virtual Registration onForeignChange(std::function<void(std::int64_t)> handler) = 0;

  /// Asks the desktop to keep the contents beyond the end of this process, if they are ours. True when
  /// somebody has taken them over; at most 1 s.
  virtual Task<bool> handOver() = 0;
};

}  // namespace murmel
