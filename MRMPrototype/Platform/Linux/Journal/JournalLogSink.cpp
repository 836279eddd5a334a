#include "Platform/Linux/Journal/JournalLogSink.h"

#include "Foundation/Print.h"

#include <cstdio>
#include <utility>

#include <syslog.h>

// The source location of this adapter says nothing about where a line comes from.
#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

namespace murmel {

namespace {

int syslogPriority(LogLevel level) {
  switch (level) {
    case LogLevel::debug:
      return LOG_DEBUG;
    case LogLevel::info:
      return LOG_INFO;
    case LogLevel::notice:
      return LOG_NOTICE;
    case LogLevel::error:
      return LOG_ERR;
  }
  std::unreachable();
}

}  // namespace

JournalLogSink::JournalLogSink(Fallback fallback, std::filesystem::path journalSocket)
    : fallback_(fallback), hasJournal_([&] {
        std::error_code ignored;
        return std::filesystem::is_socket(journalSocket, ignored);
      }()) {}

void JournalLogSink::write(LogLevel level, std::string_view subsystem, std::string_view category,
                           std::string_view line) {
  if (hasJournal_) {
    const auto size = [](std::string_view text) { return static_cast<int>(text.size()); };
    // NOLINTBEGIN(bugprone-suspicious-stringview-data-usage): each behind its length
    sd_journal_send("MESSAGE=%.*s", size(line), line.data(), "PRIORITY=%i", syslogPriority(level),
                    "MURMEL_SUBSYSTEM=%.*s", size(subsystem), subsystem.data(), "MURMEL_CATEGORY=%.*s",
                    size(category), category.data(), "SYSLOG_IDENTIFIER=murmel", nullptr);
    // NOLINTEND(bugprone-suspicious-stringview-data-usage)
  } else if (fallback_ == Fallback::standardError && level >= LogLevel::notice) {
    print(stderr, "{} [{}] {}\n", subsystem, category, line);
  }
}

}  // namespace murmel
