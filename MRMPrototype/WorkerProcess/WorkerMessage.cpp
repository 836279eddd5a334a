#include "WorkerProcess/WorkerMessage.h"

#include "Foundation/Json/Json.h"

namespace murmel {

std::optional<WorkerMessage> WorkerMessage::decode(std::string_view line) {
  const auto object = parsedJson(line);
  const auto version = object["mrm_worker_protocol"].integer();
  auto event = object["event"].text();
  if (!version || !event) return std::nullopt;
  WorkerMessage message;
  message.protocolVersion = *version;
  message.event = *std::move(event);
  message.id = object["id"].integer();
  if (auto text = object["text"].text()) message.text.emplace(*std::move(text));
  message.errorType = object["error_type"].text();
  return message;
}

}  // namespace murmel
