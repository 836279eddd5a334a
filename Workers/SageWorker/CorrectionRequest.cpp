#include "Workers/SageWorker/CorrectionRequest.h"

#include "Foundation/Json/Json.h"

namespace murmel::worker {

std::expected<CorrectionRequest, CorrectionRequest::Refusal> CorrectionRequest::decode(
    std::string_view line) {
  const auto object = parsedJson(line);
  if (!object.isObject()) return std::unexpected(Refusal{std::nullopt, "malformed request"});
  const auto id = object["id"].integer();
  const auto refused = [&id](const char* reason) { return std::unexpected(Refusal{id, reason}); };
  if (!id) return refused("request without id");
  CorrectionRequest request;
  request.id = *id;
  auto text = object["text"].text();
  if (!text) return refused("request without text");
  request.text = *std::move(text);
  if (object.contains("limit_ms")) {
    const auto milliseconds = object["limit_ms"].integer();
    if (!milliseconds || *milliseconds < 1 || *milliseconds > longestLimit.count())
      return refused("malformed limit");
    request.limit = std::chrono::milliseconds(*milliseconds);
  }
  return request;
}

}  // namespace murmel::worker
