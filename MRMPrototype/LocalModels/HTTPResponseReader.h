#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Puts the answer to one HTTP/1.1 request together from the bytes as they arrive, in bounded memory. A body
/// ends after its Content-Length, with the last chunk, or with the connection.
class HTTPResponseReader {
 public:
  enum class State { reading, complete, malformed, tooLarge };

  /// In bytes. The first bounds everything that is not body: status line, headers, chunk sizes, trailers.
  struct Limits {
    std::size_t head = 16 * 1'024;
    std::size_t body = 256 * 1'024;
  };

  HTTPResponseReader() = default;
  explicit HTTPResponseReader(Limits limits) : limits_(limits) {}

  /// Takes what has arrived. Bytes behind the end of the answer are ignored.
  State feed(std::string_view bytes);
  /// The connection has ended. Never `reading`: an answer that is not whole is malformed.
  State end();

  [[nodiscard]] State state() const { return state_; }
  /// Of the final answer; interim ones (1xx) are passed over.
  [[nodiscard]] int status() const { return status_; }
  [[nodiscard]] const std::string& body() const { return body_; }

 private:
  enum class Phase { statusLine, headers, sizedBody, endlessBody, chunkSize, chunk, chunkEnd, trailers };

  bool step();
  std::optional<std::string_view> takeLine();
  bool takeBody(std::size_t& left);
  void readStatusLine(std::string_view line);
  void readHeader(std::string_view line);
  void readContentLength(std::string_view value);
  void readChunkSize(std::string_view line);
  void endHeaders();

  Limits limits_;
  State state_ = State::reading;
  Phase phase_ = Phase::statusLine;
  std::string pending_;  ///< arrived; used up before `position_`
  std::size_t position_ = 0;
  std::size_t headBytes_ = 0;  ///< in lines that are complete
  int status_ = 0;
  std::optional<std::size_t> contentLength_;
  bool isChunked_ = false;
  std::size_t left_ = 0;  ///< of the sized body or of the chunk
  std::string body_;
};

}  // namespace murmel
