#include "Settings/VocabularyCommand.h"

#include "Foundation/Text/Text.h"
#include "Storage/FileAccess.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <utility>

#include <fmt/core.h>

namespace murmel {

namespace {

using Lines = std::vector<std::string>;

/// With the empty ones, so that they can be counted.
Lines allLinesOf(const std::string& text) {
  Lines lines;
  std::string line;
  for (std::istringstream stream(text); std::getline(stream, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

Lines withoutEmpty(Lines lines) {
  std::erase_if(lines, [](const auto& line) { return text::trimmed(line).empty(); });
  return lines;
}

Lines linesOf(const std::string& text) {
  return withoutEmpty(allLinesOf(text));
}

std::string joined(const Lines& lines) {
  std::string text;
  for (const auto& line : lines) text += (text.empty() ? "" : "\n") + line;
  return text;
}

std::string_view termOf(std::string_view line) {
  return text::trimmed(line.substr(0, line.find('=')));
}

std::string textOf(const std::optional<SecretBytes>& content) {
  if (!content) return {};
  const auto bytes = content->reveal();
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

VocabularyCommand::VocabularyCommand(FileSystem& files, SecureLocalFile file, CommandStreams streams,
                                     Unlock unlock)
    : files_(files), file_(std::move(file)), streams_(std::move(streams)), unlock_(std::move(unlock)) {}

int VocabularyCommand::run(const std::vector<std::string>& arguments) {
  const auto verb = arguments.empty() ? std::string("list") : arguments[0];
  const auto file = arguments.size() > 1 ? arguments[1] : std::string("-");
  if (arguments.size() > 2) return misused();
  if (verb == "list" && arguments.size() < 2) return writeOut("-");
  if (verb == "export") return writeOut(file);
  if (verb == "retry" && arguments.size() < 2) return retry();
  if (verb != "add" && verb != "remove" && (verb != "import" || arguments.size() < 2)) return misused();

  auto lines = given(file);
  if (!lines) {
    streams_.complain(lines.error());
    return commandFailed;
  }
  for (std::size_t number = 0; number < lines->size(); ++number) {
    const auto& line = (*lines)[number];
    if (text::trimmed(line).empty() || (!termOf(line).empty() && (verb == "remove" || line.contains('='))))
      continue;
    streams_.complain(fmt::format("Line {} is not \"term = replacement\". Nothing was changed.", number + 1));
    return commandFailed;
  }
  *lines = withoutEmpty(std::move(*lines));
  // Of a program that failed before a pipe, too, nothing comes.
  if (verb == "import" && lines->empty()) {
    streams_.complain("There is no entry in it. Nothing was changed.");
    return commandFailed;
  }
  if (verb == "import") return edit([&](const Lines&) { return *lines; }, "Imported.\n");
  const auto withoutGiven = [&](Lines stored) {
    std::erase_if(stored, [&](const auto& line) {
      return std::ranges::any_of(*lines, [&](const auto& each) { return termOf(each) == termOf(line); });
    });
    return stored;
  };
  if (verb == "remove") return edit(withoutGiven, "Removed.\n");
  // A term that is there already gets its new replacement, at the end: entries apply in their order.
  return edit(
      [&](Lines stored) {
        auto changed = withoutGiven(std::move(stored));
        std::ranges::copy(*lines, std::back_inserter(changed));
        return changed;
      },
      "Added.\n");
}

std::expected<VocabularyCommand::Lines, std::string> VocabularyCommand::given(const std::string& file) {
  constexpr std::size_t largestVocabulary = 1 << 20;
  std::ifstream opened;
  if (file != "-") {
    opened.open(file);
    if (!opened) return std::unexpected(fmt::format("The file {} cannot be read.", file));
  }
  std::istream& input = file == "-" ? streams_.input : opened;
  std::string text;
  for (char character = 0; text.size() <= largestVocabulary && input.get(character);) text += character;
  if (input.bad()) return std::unexpected(fmt::format("The file {} cannot be read.", file));
  if (text.size() > largestVocabulary) return std::unexpected("That is more than one MiB of words.");
  if (!text::isValidUtf8(text)) return std::unexpected("The words are not UTF-8 text.");
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.erase(0, byteOrderMark.size());
  return allLinesOf(text);
}

int VocabularyCommand::edit(const Edit& edit, std::string_view done) {
  const auto updated = file_.update(
      [&](const std::optional<SecretBytes>& content) -> SecureResult<std::optional<SecretBytes>> {
        const auto before = linesOf(textOf(content));
        const auto after = edit(before);
        if (after == before) return std::nullopt;
        const auto text = joined(after);
        return SecretBytes(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
      });
  if (!updated) return failed(updated.error());
  streams_.print(done);
  return commandDone;
}

int VocabularyCommand::writeOut(const std::string& file) {
  const auto content = file_.read();
  if (!content) return failed(content.error());
  auto text = textOf(*content);
  if (!text.empty() && !text.ends_with('\n')) text += '\n';
  if (file == "-") {
    streams_.print(text);
    return commandDone;
  }
  // For the owner alone, and never over something that is there.
  if (writeNewFile(files_, file, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}))
    return commandDone;
  streams_.complain(fmt::format("{} exists already, or cannot be written.", file));
  return commandFailed;
}

int VocabularyCommand::retry() {
  if (const auto unlocked = unlock_(); !unlocked) {
    streams_.complain(describe(unlocked.error()));
    return commandFailed;
  }
  // Written again as it is: a running instance that could not read it notices.
  std::size_t count = 0;
  const auto updated = file_.update(
      [&](const std::optional<SecretBytes>& content) -> SecureResult<std::optional<SecretBytes>> {
        count = linesOf(textOf(content)).size();
        if (!content || content->empty()) return std::nullopt;
        return content->copy();
      });
  if (!updated) return failed(updated.error());
  streams_.print(fmt::format("The vocabulary can be read: {} entries.\n", count));
  return commandDone;
}

int VocabularyCommand::misused() {
  streams_.complain(usage);
  return commandMisused;
}

int VocabularyCommand::failed(const SecureLocalStorageError& error) {
  streams_.complain("The vocabulary cannot be opened: " + error.description());
  return commandFailed;
}

}  // namespace murmel
