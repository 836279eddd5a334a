#include "Shell/LaunchRole.h"

#include "History/HistoryCommand.h"
#include "Settings/SettingsCommand.h"
#include "Settings/VocabularyCommand.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

namespace murmel {

namespace {

constexpr std::string_view modelDownloadSmokeFlag = "--mrm-model-download-smoke";
constexpr std::string_view dockReopenSmokeFlag = "--mrm-dock-reopen-smoke";

bool contains(const std::vector<std::string>& arguments, std::string_view flag) {
  return std::ranges::find(arguments, flag) != arguments.end();
}

std::vector<std::string> reversed(std::vector<std::string> arguments) {
  std::ranges::reverse(arguments);  // CLI11 takes them from the back.
  return arguments;
}

constexpr int usageError = 2;

/// A command line that is being declared; the command that is found on it becomes the role.
struct CommandLine {
  CLI::App app{"Murmel: private, local dictation. Without a command it starts the desktop application.",
               "murmel"};
  std::optional<LaunchRole> role;
};

template <class Role>
struct Command {
  CLI::App& app;
  Role& role;  ///< for its options to fill
};

template <class Role>
Command<Role> addCommand(CommandLine& line, std::string name, std::string help) {
  auto role = std::make_shared<Role>();
  auto& command = *line.app.add_subcommand(std::move(name), std::move(help));
  command.final_callback([&line, role] { line.role = *role; });
  return {command, *role};
}

void addForms(CLI::App& command, TranscriptForm& form, const std::vector<std::string>& names) {
  static const std::map<std::string, std::pair<TranscriptForm, const char*>> forms{
      {"json", {TranscriptForm::json, "Objects on lines, with the times"}},
      {"srt", {TranscriptForm::srt, "Subtitles (SubRip)"}},
      {"vtt", {TranscriptForm::vtt, "Subtitles (WebVTT)"}},
  };
  std::vector<CLI::Option*> flags;
  for (const auto& name : names) {
    const auto& [value, help] = forms.at(name);
    auto* const flag = command.add_flag_callback(
        "--" + name, [&form, value = value] { form = value; }, help);
    for (auto* const other : flags) flag->excludes(other);
    flags.push_back(flag);
  }
}

void addSpeechOptions(CLI::App& command, SpeechOptions& options) {
  command.add_flag("--history", options.history, "Keep the text in the history too, when it is switched on");
  command.add_flag("--refine", options.refine, "Punctuation and capitals by the local language model");
  command.add_option("--language", options.language, "Code of the language that is spoken, as in de");
}

void addTranscribe(CommandLine& line) {
  auto [command, role] = addCommand<TranscribeRole>(line, "transcribe", "Print what is said in audio files");
  command.add_option("FILE", role.files, "WAV, FLAC, Ogg, Opus, MP3 …; - is the standard input")->required();
  command.add_flag("--real-time", role.realTime, "Play them as fast as they were spoken");
  command.add_flag("--live", role.live, "Print phrases as they come");
  addForms(command, role.form, {"json", "srt", "vtt"});
  addSpeechOptions(command, role.speech);
}

void addListen(CommandLine& line) {
  auto [command, role] = addCommand<ListenRole>(line, "listen", "Print what is said into the microphone");
  addForms(command, role.form, {"json"});
  command.add_option("--until-silence", role.untilSilence, "End after so long a silence, as in 2s or 800ms")
      ->transform(CLI::AsNumberWithUnit(std::map<std::string, double>{{"s", 1}, {"ms", 0.001}}));
  addSpeechOptions(command, role.speech);
}

void addReports(CommandLine& line) {
  auto doctor =
      addCommand<DoctorRole>(line, "doctor", "Tell what works on this desktop, and why the rest does not");
  doctor.app.add_flag("--json", doctor.role.json, "For programs");
  auto status = addCommand<StatusRole>(line, "status", "Tell what the running Murmel is doing");
  status.app.add_flag("--json", status.role.json, "For programs");
}

void addDownloads(CommandLine& line) {
  auto models = addCommand<ModelsRole>(
      line, "models", "List, download, verify or remove models: list, download, verify, remove [NAME]");
  models.app.add_option("ARGUMENT", models.role.arguments,
                        "list | download NAME | verify [NAME] | remove NAME");
  auto update =
      addCommand<UpdateRole>(line, "update", "Look for a new version, or install it: check, install");
  update.app
      .add_option_function<std::string>(
          "WHAT", [&role = update.role](const std::string& what) { role.installs = what == "install"; },
          "check | install")
      ->check(CLI::IsMember({"check", "install"}));
}

/// A command on kept data reads what follows it by itself.
void takeKeptData(CommandLine& line, CLI::App& command, KeptDataRole::Data data, std::string_view usage) {
  command.prefix_command();
  command.footer(std::string(usage));
  command.final_callback([&line, &command, data] { line.role = KeptDataRole{data, command.remaining()}; });
}

void addKeptData(CommandLine& line) {
  using Data = KeptDataRole::Data;
  takeKeptData(line,
               *line.app.add_subcommand("history", "What you dictated: list, show, copy, delete, clear"),
               Data::history, HistoryCommand::usage);
  takeKeptData(
      line,
      *line.app.add_subcommand("vocabulary", "Your own words: list, add, remove, import, export, retry"),
      Data::vocabulary, VocabularyCommand::usage);
}

void addRemoteCommands(CommandLine& line) {
  for (const auto& row : intelCommandActions) {
    line.app.add_subcommand(std::string(row.action), std::string(row.help) + " (in the running Murmel)")
        ->final_callback([&line, command = row.command] { line.role = RemoteCommandRole{command}; });
  }
  // "settings" alone opens the window; with something behind it, it is about the file.
  auto& settings = *line.app.get_subcommand(std::string(actionName(IntelCommand::openSettings)));
  settings.prefix_command();
  settings.footer(std::string(SettingsCommand::usage));
  settings.description(settings.get_description() +
                       "; or on the file: list, get NAME, set NAME VALUE, reset NAME");
  settings.final_callback([&line, &settings] {
    line.role = RemoteCommandRole{IntelCommand::openSettings};
    if (settings.remaining_size() > 0)
      line.role = KeptDataRole{KeptDataRole::Data::settings, settings.remaining()};
  });
}

bool wantsSubtitlesInPieces(const LaunchRole& role) {
  const auto* transcribe = std::get_if<TranscribeRole>(&role);
  return transcribe != nullptr &&
         (transcribe->form == TranscriptForm::srt || transcribe->form == TranscriptForm::vtt) &&
         (transcribe->files.size() > 1 || transcribe->live);
}

}  // namespace

LaunchRole launchRole(const std::vector<std::string>& arguments, const std::string& version) {
  // The self-tests are found wherever they stand, whatever else is there: a release check must not become an
  // ordinary start because of an argument that a launcher added.
  if (contains(arguments, modelDownloadSmokeFlag)) return ModelDownloadSmokeRole{};
  if (contains(arguments, releaseLaunchFlag)) return DesktopRole{LaunchSelfTest::releaseLaunch};
  if (contains(arguments, dockReopenSmokeFlag)) return DesktopRole{LaunchSelfTest::dockReopen};

  CommandLine line;
  line.app.set_version_flag("--version", version);
  line.app.require_subcommand(0, 1);
  DesktopRole desktop;
  line.app.add_flag(replaceFlag, desktop.replaces, "Start when the running Murmel has ended");
  addTranscribe(line);
  addListen(line);
  addReports(line);
  addDownloads(line);
  addKeptData(line);
  addRemoteCommands(line);

  try {
    line.app.parse(reversed(arguments));
  } catch (const CLI::ParseError& error) {
    std::ostringstream output;
    const int ended = line.app.exit(error, output, output);
    return MessageRole{ended == 0 ? 0 : usageError, output.str()};
  }
  auto role = std::move(line.role).value_or(desktop);
  if (wantsSubtitlesInPieces(role))
    return MessageRole{usageError, "Subtitles are made of one whole file at a time.\n"};
  return role;
}

}  // namespace murmel
