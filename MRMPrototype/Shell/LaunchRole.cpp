#include "Shell/LaunchRole.h"

#include "History/HistoryCommand.h"
#include "Settings/SettingsCommand.h"
#include "Settings/VocabularyCommand.h"

#include <algorithm>
#include <sstream>
#include <string_view>

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

}  // namespace

LaunchRole launchRole(const std::vector<std::string>& arguments, const std::string& version) {
  // The self-tests are found wherever they stand, whatever else is there: a release check must not become an
  // ordinary start because of an argument that a launcher added.
  if (contains(arguments, modelDownloadSmokeFlag)) return ModelDownloadSmokeRole{};
  if (contains(arguments, releaseLaunchFlag)) return DesktopRole{LaunchSelfTest::releaseLaunch};
  if (contains(arguments, dockReopenSmokeFlag)) return DesktopRole{LaunchSelfTest::dockReopen};

  CLI::App app{"Murmel: private, local dictation. Without a command it starts the desktop application.",
               "murmel"};
  app.set_version_flag("--version", version);
  app.require_subcommand(0, 1);

  DesktopRole desktop;
  app.add_flag(replaceFlag, desktop.replaces, "Start when the running Murmel has ended");

  TranscribeRole transcribe;
  auto* transcribeCommand = app.add_subcommand("transcribe", "Print what is said in audio files");
  transcribeCommand
      ->add_option("FILE", transcribe.files, "WAV, FLAC, Ogg, Opus, MP3 …; - is the standard input")
      ->required();
  transcribeCommand->add_flag("--real-time", transcribe.realTime, "Play them as fast as they were spoken");
  transcribeCommand->add_flag("--live", transcribe.live, "Print phrases as they come");
  addForms(*transcribeCommand, transcribe.form, {"json", "srt", "vtt"});
  addSpeechOptions(*transcribeCommand, transcribe.speech);
  ListenRole listen;
  auto* listenCommand = app.add_subcommand("listen", "Print what is said into the microphone");
  addForms(*listenCommand, listen.form, {"json"});
  listenCommand
      ->add_option("--until-silence", listen.untilSilence, "End after so long a silence, as in 2s or 800ms")
      ->transform(CLI::AsNumberWithUnit(std::map<std::string, double>{{"s", 1}, {"ms", 0.001}}));
  addSpeechOptions(*listenCommand, listen.speech);
  auto* doctorCommand =
      app.add_subcommand("doctor", "Tell what works on this desktop, and why the rest does not");
  DoctorRole doctor;
  doctorCommand->add_flag("--json", doctor.json, "For programs");
  auto* statusCommand = app.add_subcommand("status", "Tell what the running Murmel is doing");
  StatusRole status;
  statusCommand->add_flag("--json", status.json, "For programs");
  ModelsRole models;
  auto* modelsCommand = app.add_subcommand(
      "models", "List, download, verify or remove models: list, download, verify, remove [NAME]");
  modelsCommand->add_option("ARGUMENT", models.arguments,
                            "list | download NAME | verify [NAME] | remove NAME");
  UpdateRole update;
  auto* updateCommand = app.add_subcommand("update", "Look for a new version, or install it: check, install");
  updateCommand
      ->add_option_function<std::string>(
          "WHAT", [&update](const std::string& what) { update.installs = what == "install"; },
          "check | install")
      ->check(CLI::IsMember({"check", "install"}));
  const std::pair<KeptDataRole::Data, CLI::App*> keptData[] = {
      {KeptDataRole::Data::history,
       app.add_subcommand("history", "What you dictated: list, show, copy, delete, clear")},
      {KeptDataRole::Data::vocabulary,
       app.add_subcommand("vocabulary", "Your own words: list, add, remove, import, export, retry")},
  };
  for (const auto& [data, command] : keptData) {
    command->prefix_command();
    command->footer(
        std::string(data == KeptDataRole::Data::history ? HistoryCommand::usage : VocabularyCommand::usage));
  }
  for (const auto& row : intelCommandActions) {
    app.add_subcommand(std::string(row.action), std::string(row.help) + " (in the running Murmel)");
  }
  auto* settingsCommand = app.get_subcommand(std::string(actionName(IntelCommand::openSettings)));
  settingsCommand->prefix_command();
  settingsCommand->footer(std::string(SettingsCommand::usage));
  settingsCommand->description(settingsCommand->get_description() +
                               "; or on the file: list, get NAME, set NAME VALUE, reset NAME");

  try {
    app.parse(reversed(arguments));
  } catch (const CLI::ParseError& error) {
    std::ostringstream output;
    const int ended = app.exit(error, output, output);
    return MessageRole{ended == 0 ? 0 : usageError, output.str()};
  }
  if (transcribeCommand->parsed()) {
    const bool subtitles = transcribe.form == TranscriptForm::srt || transcribe.form == TranscriptForm::vtt;
    if (subtitles && (transcribe.files.size() > 1 || transcribe.live))
      return MessageRole{usageError, "Subtitles are made of one whole file at a time.\n"};
    return transcribe;
  }
  if (listenCommand->parsed()) return listen;
  if (doctorCommand->parsed()) return doctor;
  if (statusCommand->parsed()) return status;
  if (modelsCommand->parsed()) return models;
  if (updateCommand->parsed()) return update;
  // "settings" alone opens the window; with something behind it, it is about the file.
  if (settingsCommand->parsed() && settingsCommand->remaining_size() > 0)
    return KeptDataRole{KeptDataRole::Data::settings, settingsCommand->remaining()};
  for (const auto& [data, command] : keptData) {
    if (command->parsed()) return KeptDataRole{data, command->remaining()};
  }
  for (const auto* command : app.get_subcommands()) {
    if (const auto found = commandForAction(command->get_name())) return RemoteCommandRole{*found};
  }
  return desktop;
}

}  // namespace murmel
