#pragma once

#include "Foundation/Async/Task.h"
#include "Foundation/SpokenText.h"

#include <functional>
#include <string>

namespace murmel {

/// Delivers the phrases of one dictation while the user still speaks. From the first phrase that could not be
/// inserted on it only collects: the target never receives text out of order or with a gap. Main thread; one
/// `append` at a time.
class LiveDictationDelivery {
 public:
  /// The clean-up that a final text gets, too.
  using Clean = std::function<std::string(std::string)>;
  /// Inserts one piece into the target application; false when it did not arrive there.
  using Insert = std::function<Task<bool>(SpokenText)>;

  LiveDictationDelivery(Clean clean, Insert insert);

  /// Every piece but the first begins with the space that parts it from the one before. A phrase of which
  /// nothing is left after the clean-up changes nothing.
  Task<void> append(SpokenText phrase);

  /// Everything delivered so far, inserted or not.
  [[nodiscard]] SpokenText text() const { return SpokenText(text_); }
  /// The part of `text` that was not inserted.
  [[nodiscard]] SpokenText remaining() const { return SpokenText(remaining_); }
  /// Whether an insertion failed.
  [[nodiscard]] bool blocked() const { return blocked_; }

 private:
  Clean clean_;
  Insert insert_;
  std::string text_;
  std::string remaining_;
  bool blocked_ = false;
};

}  // namespace murmel
