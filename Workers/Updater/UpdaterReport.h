#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace murmel::updater {

/// Tells the application how things stand: one JSON object a line. False when nobody reads any more.
class UpdaterReport {
 public:
  explicit UpdaterReport(int descriptor) : descriptor_(descriptor) {}

  /// The feed as it came; nobody has looked at it yet.
  bool feed(std::string_view bytes);
  /// `state` is a word of the downloader's protocol; `received` and `total` in bytes.
  bool progress(std::string_view state, std::int64_t received, std::optional<std::int64_t> total,
                const std::string& cause);
  bool done();
  /// One sentence for the user.
  bool failed(const std::string& message);

 private:
  int descriptor_;
};

}  // namespace murmel::updater
