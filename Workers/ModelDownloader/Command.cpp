#include "Workers/ModelDownloader/Command.h"

#include "Foundation/Json/Json.h"

#include <optional>

namespace murmel::downloader {

namespace {

std::optional<std::vector<std::string>> identifiersOf(const Json& object) {
  const auto& elements = object["identifiers"].elements();
  if (elements.empty()) return std::nullopt;
  std::vector<std::string> identifiers;
  for (const auto& element : elements) {
    auto text = element.text();
    if (!text) return std::nullopt;
    identifiers.push_back(*std::move(text));
  }
  return identifiers;
}

}  // namespace

std::expected<Command, std::string> parseCommand(std::string_view line) {
  const auto object = parsedJson(line);
  if (!object.isObject()) return std::unexpected("not_json");
  if (object["mrm_downloader_protocol"] != protocolVersion) return std::unexpected("protocol_version");
  const auto command = object["command"].text();
  if (command == "runtime") {
    const auto active = object["active"].boolean();
    if (!active) return std::unexpected("malformed");
    return RuntimeCommand{*active};
  }
  if (command != "download" && command != "cancel") return std::unexpected("unknown_command");
  auto identifiers = identifiersOf(object);
  if (!identifiers) return std::unexpected("malformed");
  if (command == "cancel") {
    const auto discard = object["discard"].boolean();
    if (!discard && object.contains("discard")) return std::unexpected("malformed");
    return CancelCommand{*std::move(identifiers), discard.value_or(false)};
  }
  const auto importance =
      fromRawValue<MRMModelDownloadImportance>(object["importance"].text().value_or("required"));
  if (!importance) return std::unexpected("malformed");
  return DownloadCommand{*std::move(identifiers), *importance};
}

}  // namespace murmel::downloader
