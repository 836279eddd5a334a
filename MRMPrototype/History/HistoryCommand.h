#pragma once

#include "Foundation/SpokenText.h"
#include "History/HistoryFile.h"
#include "Storage/CommandStreams.h"

#include <expected>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// "murmel history": what the command line does with the history, on its file under the lock of all writers.
/// Blocks.
class HistoryCommand {
 public:
  static constexpr std::string_view usage =
      "usage: murmel history list [--json] | show NUMBER [--json] | copy NUMBER | delete NUMBER | clear "
      "[--yes]\n"
      "NUMBER counts from the newest, which is 1; an entry's identifier does as well.\n";

  /// Puts a text on the clipboard; the error is one sentence.
  using Copy = std::function<std::expected<void, std::string>(SpokenText)>;

  HistoryCommand(HistoryFile file, CommandStreams streams, Copy copy);

  /// Gives the exit status.
  int run(std::vector<std::string> arguments);

 private:
  const HistoryEntry* chosen(const std::vector<HistoryEntry>& entries, const std::string& which);
  int list(const std::vector<HistoryEntry>& entries, bool asJson);
  int show(const HistoryEntry& entry, bool asJson);
  int clear(std::size_t count, bool isConfirmed);
  int change(const HistoryChanges& changes, std::string_view done);
  int failed(const SecureLocalStorageError& error);

  HistoryFile file_;
  CommandStreams streams_;
  Copy copy_;
};

}  // namespace murmel
