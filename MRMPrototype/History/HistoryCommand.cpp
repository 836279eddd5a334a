#include "History/HistoryCommand.h"

#include "Foundation/Json/Json.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ctime>
#include <utility>

#include <fmt/chrono.h>
#include <fmt/core.h>

namespace murmel {

namespace {

constexpr std::size_t longestPreview = 60;  // characters, so that a line fits a terminal

std::tm brokenDown(const HistoryEntry& entry, bool utc) {
  // Any stored number is somebody's date; the calendar has its limits.
  const double seconds = std::clamp(entry.createdAt + historyReferenceDate, -6e10, 2.5e11);
  const auto time = static_cast<std::time_t>(std::floor(seconds));
  std::tm parts{};
  (void)(utc ? ::gmtime_r(&time, &parts) : ::localtime_r(&time, &parts));
  return parts;
}

/// One line, cut between characters.
std::string preview(const std::string& text) {
  std::string line;
  std::size_t count = 0;
  for (const auto character : text::characters(text)) {
    if (count++ == longestPreview) return line + "…";
    if (character.find_first_of("\n\r\t") == std::string_view::npos) {
      line += character;
    } else {
      line += ' ';
    }
  }
  return line;
}

Json jsonOf(const HistoryEntry& entry) {
  Json json{{"id", entry.id.text()},
            {"createdAt", fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", brokenDown(entry, true))},
            {"text", entry.text.reveal()},
            {"providerID", entry.providerID},
            {"language", entry.language}};
  if (entry.unrecognizedParts) json["unrecognizedParts"] = *entry.unrecognizedParts;
  return json;
}

std::string written(const Json& json) {
  return jsonText(json, JsonCharacters::utf8, 2) + "\n";
}

bool take(std::vector<std::string>& arguments, std::string_view flag) {
  return std::erase(arguments, flag) > 0;
}

}  // namespace

HistoryCommand::HistoryCommand(HistoryFile file, CommandStreams streams, Copy copy)
    : file_(std::move(file)), streams_(std::move(streams)), copy_(std::move(copy)) {}

int HistoryCommand::run(std::vector<std::string> arguments) {
  const bool asJson = take(arguments, "--json");
  const bool isConfirmed = take(arguments, "--yes");
  const auto verb = arguments.empty() ? std::string("list") : arguments[0];
  const bool choosesOne = verb == "show" || verb == "copy" || verb == "delete";
  if ((!choosesOne && verb != "list" && verb != "clear") || arguments.size() > (choosesOne ? 2U : 1U) ||
      (choosesOne && arguments.size() < 2)) {
    streams_.complain(usage);
    return commandMisused;
  }
  const auto entries = file_.load();
  // A damaged file can still be deleted.
  if (!entries && verb != "clear") return failed(entries.error());
  if (verb == "clear") return clear(entries ? entries->size() : 0, isConfirmed);
  if (verb == "list") return list(*entries, asJson);
  const auto* const entry = chosen(*entries, arguments[1]);
  if (entry == nullptr) {
    streams_.complain("There is no such entry; \"murmel history list\" shows those there are.");
    return commandFailed;
  }
  if (verb == "show") return show(*entry, asJson);
  if (verb == "delete") {
    HistoryChanges changes;
    changes.removed.insert(entry->id);
    return change(changes, "Deleted.\n");
  }
  const auto copied = copy_(entry->text);
  if (copied) return commandDone;
  streams_.complain(copied.error());
  return commandFailed;
}

const HistoryEntry* HistoryCommand::chosen(const std::vector<HistoryEntry>& entries,
                                           const std::string& which) {
  std::size_t number = 0;
  const auto* const end = which.data() + which.size();
  const auto read = std::from_chars(which.data(), end, number);
  if (read.ec == std::errc() && read.ptr == end)
    return number >= 1 && number <= entries.size() ? &entries[number - 1] : nullptr;
  const auto identifier = Uuid::parse(which);
  if (!identifier) return nullptr;
  const auto found = std::ranges::find(entries, *identifier, &HistoryEntry::id);
  return found == entries.end() ? nullptr : &*found;
}

int HistoryCommand::list(const std::vector<HistoryEntry>& entries, bool asJson) {
  if (asJson) {
    auto all = Json::array();
    for (const auto& entry : entries) all.append(jsonOf(entry));
    streams_.print(written(all));
    return commandDone;
  }
  if (entries.empty()) streams_.print("The history is empty.\n");
  std::size_t number = 0;
  for (const auto& entry : entries) {
    streams_.print(fmt::format("{:>4}  {:%Y-%m-%d %H:%M}  {}\n", ++number, brokenDown(entry, false),
                               preview(entry.text.reveal())));
  }
  return commandDone;
}

int HistoryCommand::show(const HistoryEntry& entry, bool asJson) {
  streams_.print(asJson ? written(jsonOf(entry)) : entry.text.reveal() + "\n");
  return commandDone;
}

int HistoryCommand::clear(std::size_t count, bool isConfirmed) {
  if (!isConfirmed) {
    streams_.print(fmt::format("Delete the whole history ({} entries) for good? Type yes: ", count));
    std::string answer;
    if (!std::getline(streams_.input, answer) || answer != "yes") {
      streams_.complain("Nothing was deleted.");
      return commandFailed;
    }
  }
  HistoryChanges changes;
  changes.clears = true;
  return change(changes, "Deleted. No copy of the file can be read any more.\n");
}

int HistoryCommand::change(const HistoryChanges& changes, std::string_view done) {
  const auto changed = file_.change(changes);
  if (!changed) return failed(changed.error());
  streams_.print(done);
  return commandDone;
}

int HistoryCommand::failed(const SecureLocalStorageError& error) {
  streams_.complain("The history cannot be opened: " + error.description());
  return commandFailed;
}

}  // namespace murmel
