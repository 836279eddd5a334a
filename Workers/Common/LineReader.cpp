#include "Workers/Common/LineReader.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <unistd.h>

namespace murmel::worker {

namespace {

constexpr std::size_t chunkSize = 256 * 1'024;

}  // namespace

void LineReader::release() {
  buffer_.erase(0, std::exchange(consumed_, 0));
  buffer_.shrink_to_fit();
  lineSize_ = 0;
}

LineReader::Outcome LineReader::next() {
  buffer_.erase(0, std::exchange(consumed_, 0));
  lineSize_ = 0;
  bool isTooLong = false;
  std::size_t searched = 0;
  while (true) {
    const auto feed = buffer_.find('\n', searched);
    if (feed != std::string::npos) {
      consumed_ = feed + 1;
      if (isTooLong || feed > longestLine_) return Outcome::tooLong;
      lineSize_ = feed;
      return Outcome::line;
    }
    searched = buffer_.size();
    if (searched > longestLine_) {
      isTooLong = true;
      buffer_.clear();
      buffer_.shrink_to_fit();
      searched = 0;
    }
    if (!receive()) return Outcome::end;
  }
}

/// False at the end of the input, and when it cannot be read: there will be no more requests either way.
bool LineReader::receive() {
  const auto before = buffer_.size();
  if (buffer_.capacity() < before + chunkSize) buffer_.reserve(std::max(2 * before, before + chunkSize));
  ssize_t count = 0;
  buffer_.resize_and_overwrite(before + chunkSize, [&](char* data, std::size_t) {
    do {
      count = ::read(descriptor_, data + before, chunkSize);
    } while (count < 0 && errno == EINTR);
    return before + static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  });
  return count > 0;
}

}  // namespace murmel::worker
