#pragma once

#include <QString>
#include <QVariantMap>
#include <algorithm>
#include <cstdint>
#include <string>

#include <time.h>

namespace murmel::remote {

/// What both ends of the door agree on.
inline const auto applicationInterface = QStringLiteral("org.freedesktop.Application");
inline const auto dictationInterface = QStringLiteral("app.murmel.Dictation1");
inline const auto propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

/// How long a caller waits. A running instance answers in well under a millisecond unless it opens a
/// microphone.
inline constexpr int replyTimeoutMilliseconds = 4'000;
/// Up to when a request is carried out: earlier than the caller's timer, which is a coarse one, can end.
inline constexpr std::uint64_t deadlineMicroseconds = 2'000'000;

/// The object path that org.freedesktop.Application prescribes: slashes for dots, and "_" for "-".
inline QString objectPath(const std::string& identifier) {
  auto path = "/" + identifier;
  std::ranges::replace(path, '.', '/');
  std::ranges::replace(path, '-', '_');
  return QString::fromStdString(path);
}

/// Microseconds on a clock that all processes share.
inline std::uint64_t sharedClock() {
  timespec now{};
  ::clock_gettime(CLOCK_BOOTTIME, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 + static_cast<std::uint64_t>(now.tv_nsec) / 1'000;
}

}  // namespace murmel::remote
