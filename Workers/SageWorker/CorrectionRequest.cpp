#include "Workers/SageWorker/CorrectionRequest.h"

#include "Foundation/Json/Json.h"

#include <limits>

namespace murmel::worker {

namespace {

std::optional<std::int64_t> integer(const Json& value) {
  if (!value.is_number_integer()) return std::nullopt;
  constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (value.is_number_unsigned() && value.get<std::uint64_t>() > largest) return std::nullopt;
  return value.get<std::int64_t>();
}

}  // namespace

std::expected<CorrectionRequest, CorrectionRequest::Refusal> CorrectionRequest::decode(
    std::string_view line) {
  const auto object = parsedJson(line);
  if (!object.is_object()) return std::unexpected(Refusal{std::nullopt, "malformed request"});
  const auto id = object.contains("id") ? integer(object["id"]) : std::nullopt;
  const auto refused = [&id](const char* reason) { return std::unexpected(Refusal{id, reason}); };
  if (!id) return refused("request without id");
  CorrectionRequest request;
  request.id = *id;
  const auto text = object.find("text");
  if (text == object.end() || !text->is_string()) return refused("request without text");
  request.text = text->get<std::string>();
  if (const auto limit = object.find("limit_ms"); limit != object.end()) {
    const auto milliseconds = integer(*limit);
    if (!milliseconds || *milliseconds < 1 || *milliseconds > longestLimit.count())
      return refused("malformed limit");
    request.limit = std::chrono::milliseconds(*milliseconds);
  }
  return request;
}

}  // namespace murmel::worker
