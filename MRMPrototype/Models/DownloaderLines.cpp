#include "Models/DownloaderLines.h"

#include "Foundation/Json/Json.h"
#include "Foundation/RawValue.h"

namespace murmel {

namespace {

using Kind = DownloaderEvent::Kind;

constexpr int protocolVersion = 1;

constexpr auto kinds = std::to_array<RawValueRow<Kind>>({
    {Kind::ready, "ready"},
    {Kind::progress, "progress"},
    {Kind::installed, "installed"},
    {Kind::failed, "failed"},
    {Kind::cancelled, "cancelled"},
    {Kind::refused, "refused"},
    {Kind::idle, "idle"},
    {Kind::fatal, "fatal"},
});

std::string line(const char* command, Json rest) {
  rest["mrm_downloader_protocol"] = protocolVersion;
  rest["command"] = command;
  return jsonText(rest, JsonCharacters::ascii) + '\n';
}

}  // namespace

std::optional<DownloaderEvent> DownloaderEvent::decode(std::string_view line) {
  const auto object = parsedJson(line);
  if (object["mrm_downloader_protocol"].integer() != protocolVersion) return std::nullopt;
  const auto kind = std::ranges::find(kinds, object["event"].textOrEmpty(), &RawValueRow<Kind>::raw);
  if (kind == kinds.end()) return std::nullopt;
  return DownloaderEvent{.kind = kind->value,
                         .identifier = object["identifier"].textOrEmpty(),
                         .state = object["state"].textOrEmpty(),
                         .received = object["received"].integer().value_or(0),
                         .total = object["total"].integer(),
                         .reason = object["reason"].textOrEmpty(),
                         .message = object["message"].textOrEmpty()};
}

std::string downloader_command::download(const std::vector<std::string>& identifiers,
                                         MRMModelDownloadImportance importance) {
  return line("download", {{"identifiers", identifiers}, {"importance", rawValue(importance)}});
}

std::string downloader_command::cancel(const std::vector<std::string>& identifiers, bool discard) {
  return line("cancel", {{"identifiers", identifiers}, {"discard", discard}});
}

std::string downloader_command::runtime(bool active) {
  return line("runtime", {{"active", active}});
}

}  // namespace murmel
