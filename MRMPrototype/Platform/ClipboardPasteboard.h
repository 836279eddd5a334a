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
  /// Never null.
  SharedSnapshot contents = shared({});
  /// False when the owner offered more than it delivered, or the contents changed while they were read.
  bool complete = true;
  /// The change count to which the contents belong.
  std::int64_t changeCount = 0;
};

/// Somebody asked for contents that this application had put on the clipboard.
struct ClipboardRead {
  enum class Kind {
    text,         ///< was given a form of the plain text
    otherForm,    ///< was given a picture, a marker or the like
    listOfForms,  ///< was told which forms there are
    refused,      ///< asked for the plain text, which is meant for another program
  };
  std::int64_t changeCount = 0;  ///< of the contents that were asked for
  Kind kind = Kind::otherForm;
  DesktopClient reader;
  Instant at{};
};

/// What becomes of the contents at the end of this process.
enum class ClipboardHandOver {
  notOurs,   ///< somebody else's stand there, or none
  arranged,  ///< somebody goes on serving ours
  failed,    ///< ours go with this process
};

/// One clipboard of the desktop. Main thread; operations run in the order in which they were first awaited,
/// and one that was begun is carried out even when its task is destroyed.
class ClipboardPasteboard {
 public:
  virtual ~ClipboardPasteboard() = default;

  /// Goes up by one with every change of the contents, whoever made it.
  virtual Task<std::int64_t> changeCount() = 0;

  /// Everything on the clipboard. Takes as long as the owner goes on delivering, at most 30 s, and holds up
  /// nothing else; it ends early, with what is there by then, when the contents are replaced.
  virtual Task<ClipboardCapture> capture() = 0;

  /// One form of the contents; nothing when it is not offered or not delivered within 1.5 s.
  virtual Task<std::optional<std::string>> data(std::string type) = 0;

  /// Replaces the contents, or clears the clipboard when there is no value in `contents`. The answer is the
  /// change count right after, nothing when the clipboard could not be taken.
  virtual Task<std::optional<std::int64_t>> mrmReplace(ClipboardSnapshot contents) = 0;

  /// `mrmReplace`, but the plain text is given to `onlyReader` alone. Others see contents without text:
  /// programs that collect what was copied find nothing to keep.
  virtual Task<std::optional<std::int64_t>> mrmReplaceFor(DesktopClient onlyReader,
                                                          ClipboardSnapshot contents) = 0;
  /// From now on everybody is given the contents with this change count, if they still stand here. That is
  /// no change, and nobody is told of it.
  virtual Task<bool> serveEverybody(std::int64_t changeCount) = 0;

  /// `mrmReplace`, but only while the change count is still `expected`, in one step: contents that somebody
  /// else writes in the meantime are never overwritten.
  virtual Task<std::optional<std::int64_t>> mrmReplaceIfUnchanged(SharedSnapshot contents,
                                                                  std::int64_t expected) = 0;

  /// Every read of contents that this application has written, and every refusal.
  [[nodiscard]] virtual Registration onRead(std::function<void(const ClipboardRead&)> handler) = 0;
  /// Every change that somebody else made, with the new change count.
  [[nodiscard]] virtual Registration onForeignChange(std::function<void(std::int64_t)> handler) = 0;

  /// Has the contents served beyond the end of this process, if they are ours. Takes 6 s at most.
  virtual Task<ClipboardHandOver> handOver() = 0;
};

}  // namespace murmel
