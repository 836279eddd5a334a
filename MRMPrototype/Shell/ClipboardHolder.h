#pragma once

#include "Foundation/SpokenText.h"
#include "Foundation/UniqueDescriptor.h"
#include "Shell/Programs.h"

#include <expected>
#include <string>

namespace murmel {

/// A process that keeps a text on the clipboard after the command that put it there has ended: on this
/// desktop contents live as long as their owner. It ends when somebody else copies something, and after an
/// hour.
class ClipboardHolder {
 public:
  /// Starts it. Before this process has any thread.
  explicit ClipboardHolder(Arguments arguments);

  /// Hands the text over, marked private. The error is one sentence.
  std::expected<void, std::string> hold(const SpokenText& text);

 private:
  UniqueDescriptor words_;   ///< to the holder
  UniqueDescriptor answer_;  ///< from it: empty when the text is on the clipboard, else a sentence
};

}  // namespace murmel
