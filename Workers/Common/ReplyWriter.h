#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace murmel::worker {

/// Writes the worker's side of the protocol, one line a call. False when nobody reads any more.
class ReplyWriter {
 public:
  /// `descriptor` stays the caller's.
  explicit ReplyWriter(int descriptor) : descriptor_(descriptor) {}

  bool ready();
  bool result(std::int64_t id, std::string_view text);
  bool error(std::optional<std::int64_t> id, std::string_view reason);

 private:
  int descriptor_;
};

}  // namespace murmel::worker
