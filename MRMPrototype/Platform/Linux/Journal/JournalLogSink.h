#pragma once

#include "Foundation/Log.h"

#include <filesystem>

namespace murmel {

/// Writes to the system's journal, with the fields MURMEL_SUBSYSTEM and MURMEL_CATEGORY beside the message.
/// Where no journal listens, lines go to standard error, if that is wanted. Thread-safe.
class JournalLogSink final : public LogSink {
 public:
  enum class Fallback { standardError, none };

  /// `journalSocket` is where a journal listens.
  explicit JournalLogSink(Fallback fallback,
                          std::filesystem::path journalSocket = "/run/systemd/journal/socket");

  void write(LogLevel level, std::string_view subsystem, std::string_view category,
             std::string_view line) override;

 private:
  Fallback fallback_;
  bool hasJournal_;
};

}  // namespace murmel
