#include "WorkerProcess/WorkerMessage.h"

#include "Foundation/Json/Json.h"

#include <limits>

namespace murmel {

namespace {

std::optional<std::int64_t> integer(const Json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_number_integer()) return std::nullopt;
  constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (found->is_number_unsigned() && found->get<std::uint64_t>() > largest) return std::nullopt;
  return found->get<std::int64_t>();
}

std::optional<std::string> string(Json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_string()) return std::nullopt;
  return std::move(found->get_ref<std::string&>());
}

}  // namespace

std::optional<WorkerMessage> WorkerMessage::decode(std::string_view line) {
  auto object = parsedJson(line);
  if (!object.is_object()) return std::nullopt;
  const auto version = integer(object, "mrm_worker_protocol");
  auto event = string(object, "event");
  if (!version || !event) return std::nullopt;
  WorkerMessage message;
  message.protocolVersion = *version;
  message.event = *std::move(event);
  message.id = integer(object, "id");
  if (auto text = string(object, "text")) message.text.emplace(*std::move(text));
  message.errorType = string(object, "error_type");
  return message;
}

}  // namespace murmel
