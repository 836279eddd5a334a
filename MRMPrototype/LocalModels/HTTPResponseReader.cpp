#include "LocalModels/HTTPResponseReader.h"

#include "Foundation/Text/Ascii.h"

#include <charconv>
#include <utility>

namespace murmel {

namespace {

std::string_view withoutBlanks(std::string_view text) {
  return text::asciiTrimmed(text, " \t");
}

/// The whole of `digits` as a number; nothing when it is none or too large to be a size.
std::optional<std::size_t> number(std::string_view digits, int base) {
  std::size_t value = 0;
  const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  if (failure != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return value;
}

}  // namespace

HTTPResponseReader::State HTTPResponseReader::feed(std::string_view bytes) {
  if (state_ != State::reading) return state_;
  pending_.append(bytes);
  while (state_ == State::reading && step()) {
  }
  pending_.erase(0, std::exchange(position_, 0));
  return state_;
}

HTTPResponseReader::State HTTPResponseReader::end() {
  if (state_ == State::reading) state_ = phase_ == Phase::endlessBody ? State::complete : State::malformed;
  return state_;
}

/// Goes one step on. False when more bytes are needed for it.
bool HTTPResponseReader::step() {
  switch (phase_) {
    case Phase::sizedBody:
      if (!takeBody(left_)) return false;
      state_ = State::complete;
      return true;
    case Phase::endlessBody: {
      auto all = pending_.size() - position_;
      if (body_.size() + all > limits_.body) {
        state_ = State::tooLarge;
        return true;
      }
      takeBody(all);
      return false;
    }
    case Phase::chunk:
      if (!takeBody(left_)) return false;
      phase_ = Phase::chunkEnd;
      return true;
    default:
      break;
  }
  const auto line = takeLine();
  if (!line) return state_ != State::reading;
  switch (phase_) {
    case Phase::statusLine:
      readStatusLine(*line);
      break;
    case Phase::headers:
      line->empty() ? endHeaders() : readHeader(*line);
      break;
    case Phase::chunkSize:
      readChunkSize(*line);
      break;
    case Phase::chunkEnd:
      if (!line->empty()) state_ = State::malformed;
      phase_ = Phase::chunkSize;
      break;
    default:  // What a trailer says changes nothing.
      if (line->empty()) state_ = State::complete;
      break;
  }
  return true;
}

/// The next line without its end, CR LF or LF. Notices when the head has grown too large.
std::optional<std::string_view> HTTPResponseReader::takeLine() {
  const auto feed = pending_.find('\n', position_);
  const auto size = (feed == std::string::npos ? pending_.size() : feed + 1) - position_;
  if (headBytes_ + size > limits_.head) {
    state_ = State::tooLarge;
    return std::nullopt;
  }
  if (feed == std::string::npos) return std::nullopt;
  std::string_view line(pending_.data() + position_, size - 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  position_ += size;
  headBytes_ += size;
  return line;
}

/// Moves what is there of the next `left` bytes to the body. True when all of them have come.
bool HTTPResponseReader::takeBody(std::size_t& left) {
  const auto count = std::min(left, pending_.size() - position_);
  body_.append(pending_, position_, count);
  position_ += count;
  left -= count;
  return left == 0;
}

void HTTPResponseReader::readStatusLine(std::string_view line) {
  constexpr std::string_view version = "HTTP/1.";
  constexpr auto digitsAt = version.size() + 2;
  constexpr std::size_t digitCount = 3;
  const bool hasShape = line.starts_with(version) && line.size() >= digitsAt + digitCount &&
                        line[digitsAt - 1] == ' ' &&
                        (line.size() == digitsAt + digitCount || line[digitsAt + digitCount] == ' ');
  constexpr std::size_t smallestStatus = 100;
  const auto code = hasShape ? number(line.substr(digitsAt, digitCount), 10) : std::nullopt;
  if (!code || *code < smallestStatus) {
    state_ = State::malformed;
    return;
  }
  status_ = static_cast<int>(*code);
  phase_ = Phase::headers;
}

void HTTPResponseReader::readHeader(std::string_view line) {
  const auto colon = line.find(':');
  const auto name = line.substr(0, colon);
  if (colon == std::string_view::npos || name.empty() ||
      name.find_first_of(" \t") != std::string_view::npos) {
    state_ = State::malformed;
    return;
  }
  const auto value = withoutBlanks(line.substr(colon + 1));
  if (text::equalsIgnoringAsciiCase(name, "content-length")) readContentLength(value);
  if (text::equalsIgnoringAsciiCase(name, "transfer-encoding")) {
    // Whoever compresses or reorders was not asked to.
    if (!text::equalsIgnoringAsciiCase(value, "chunked")) state_ = State::malformed;
    isChunked_ = true;
  }
}

void HTTPResponseReader::readContentLength(std::string_view value) {
  const auto length = number(value, 10);
  if (!length || (contentLength_ && contentLength_ != length)) {
    state_ = State::malformed;
    return;
  }
  contentLength_ = length;
}

void HTTPResponseReader::readChunkSize(std::string_view line) {
  const auto size = number(withoutBlanks(line.substr(0, line.find(';'))), 16);
  if (!size) {
    state_ = State::malformed;
  } else if (*size > limits_.body - body_.size()) {
    state_ = State::tooLarge;
  } else {
    left_ = *size;
    phase_ = *size == 0 ? Phase::trailers : Phase::chunk;
  }
}

void HTTPResponseReader::endHeaders() {
  constexpr int switchingProtocols = 101;
  constexpr int firstFinal = 200;
  constexpr int noContent = 204;
  constexpr int notModified = 304;
  if (status_ == switchingProtocols) {
    state_ = State::malformed;
  } else if (status_ < firstFinal) {
    phase_ = Phase::statusLine;
    contentLength_.reset();
    isChunked_ = false;
  } else if (status_ == noContent || status_ == notModified) {
    state_ = State::complete;
  } else if (isChunked_) {
    phase_ = Phase::chunkSize;
  } else if (!contentLength_) {
    phase_ = Phase::endlessBody;
  } else if (*contentLength_ > limits_.body) {
    state_ = State::tooLarge;
  } else {
    left_ = *contentLength_;
    phase_ = Phase::sizedBody;
  }
}

}  // namespace murmel
