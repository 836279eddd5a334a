// What the language model's server answers.

#include "LocalModels/HTTPResponseReader.h"
#include "LocalModels/QwenChat.h"
#include "Require.h"

#include <cstdint>
#include <tuple>

using namespace murmel;

namespace {

constexpr HTTPResponseReader::Limits limits{.head = 1'024, .body = 2'048};

auto read(std::string_view bytes, std::size_t piece) {
  HTTPResponseReader reader(limits);
  while (!bytes.empty() && reader.feed(bytes.substr(0, piece)) == HTTPResponseReader::State::reading)
    bytes.remove_prefix(std::min(piece, bytes.size()));
  const auto state = reader.end();
  require(state != HTTPResponseReader::State::reading, "an ended answer is whole or wrong");
  require(reader.body().size() <= limits.body, "memory is bounded");
  const bool isWhole = state == HTTPResponseReader::State::complete;
  return std::tuple(isWhole, isWhole ? reader.status() : 0, isWhole ? reader.body() : std::string());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const auto whole = read(bytes, bytes.size() + 1);
  require(read(bytes, 1 + data[0] % 16) == whole, "pieces make the same answer");
  const std::string_view body = std::get<0>(whole) ? std::string_view(std::get<2>(whole)) : bytes;
  if (const auto answer = QwenChat::answer(body)) (void)QwenChat::sanitizeResponse(*answer);
  if (const auto text = QwenChat::sanitizeResponse(bytes))
    require(text->size() <= bytes.size(), "an answer only gets shorter");
  return 0;
}
