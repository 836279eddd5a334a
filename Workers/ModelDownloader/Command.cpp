#include "Workers/ModelDownloader/Command.h"

#include "Foundation/Json/Json.h"

#include <optional>

namespace murmel::downloader {

namespace {

std::optional<std::string> textAt(const Json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_string()) return std::nullopt;
  return found->get<std::string>();
}

std::optional<std::vector<std::string>> identifiersOf(const Json& object) {
  const auto found = object.find("identifiers");
  if (found == object.end() || !found->is_array() || found->empty()) return std::nullopt;
  std::vector<std::string> identifiers;
  for (const auto& element : *found) {
    if (!element.is_string()) return std::nullopt;
    identifiers.push_back(element.get<std::string>());
  }
  return identifiers;
}

}  // namespace

std::expected<Command, std::string> parseCommand(std::string_view line) {
  const auto object = parsedJson(line);
  if (!object.is_object()) return std::unexpected("not_json");
  const auto version = object.find("mrm_downloader_protocol");
  if (version == object.end() || *version != protocolVersion) return std::unexpected("protocol_version");
  const auto command = textAt(object, "command");
  if (command == "runtime") {
    const auto active = object.find("active");
    if (active == object.end() || !active->is_boolean()) return std::unexpected("malformed");
    return RuntimeCommand{active->get<bool>()};
  }
  if (command != "download" && command != "cancel") return std::unexpected("unknown_command");
  auto identifiers = identifiersOf(object);
  if (!identifiers) return std::unexpected("malformed");
  if (command == "cancel") {
    const auto discard = object.find("discard");
    if (discard != object.end() && !discard->is_boolean()) return std::unexpected("malformed");
    return CancelCommand{*std::move(identifiers), discard != object.end() && discard->get<bool>()};
  }
  const auto importance =
      fromRawValue<MRMModelDownloadImportance>(textAt(object, "importance").value_or("required"));
  if (!importance) return std::unexpected("malformed");
  return DownloadCommand{*std::move(identifiers), *importance};
}

}  // namespace murmel::downloader
