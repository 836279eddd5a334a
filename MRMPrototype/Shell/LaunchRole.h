#pragma once

#include "Shell/IntelCommand.h"
#include "Shell/TranscriptForms.h"

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace murmel {

/// Asks for `DesktopRole::replaces`.
inline constexpr const char* replaceFlag = "--replace";
/// Asks for `LaunchSelfTest::releaseLaunch`.
inline constexpr const char* releaseLaunchFlag = "--mrm-release-launch-smoke";

/// The launch-time self-tests of the desktop application.
enum class LaunchSelfTest { none, releaseLaunch, dockReopen };

/// What this process is going to be, as its arguments say.
struct DesktopRole {
  LaunchSelfTest selfTest = LaunchSelfTest::none;
  bool replaces = false;  ///< wait for the running instance to end instead of showing it
};
struct ModelDownloadSmokeRole {};
/// What a program on the command line says in place of the settings.
struct SpeechOptions {
  bool refine = false;                  ///< format with the local models
  bool history = false;                 ///< keep the text in the history, when that is switched on
  std::optional<std::string> language;  ///< two letters; forces the language of recognition
};
struct TranscribeRole {
  std::vector<std::filesystem::path> files;
  TranscriptForm form = TranscriptForm::text;
  bool realTime = false;  ///< play the recordings as fast as they were spoken
  bool live = false;      ///< print phrases as they come
  SpeechOptions speech;
};
struct ListenRole {
  TranscriptForm form = TranscriptForm::text;
  std::optional<double> untilSilence;  ///< seconds
  SpeechOptions speech;
};
struct RemoteCommandRole {
  IntelCommand command;
};
struct StatusRole {
  bool json = false;
};
struct DoctorRole {
  bool json = false;
};
struct ModelsRole {
  std::vector<std::string> arguments;  ///< after "models"
};
struct UpdateRole {
  bool installs = false;  ///< else it only looks
};
struct KeptDataRole {
  enum class Data { history, vocabulary, settings };
  Data data = Data::history;
  std::vector<std::string> arguments;  ///< after "history", "vocabulary" or "settings"
};
/// Help, version or a mistake: print and leave.
struct MessageRole {
  int exitStatus = 0;
  std::string text;
};

using LaunchRole =
    std::variant<DesktopRole, ModelDownloadSmokeRole, TranscribeRole, ListenRole, RemoteCommandRole,
                 StatusRole, DoctorRole, ModelsRole, UpdateRole, KeptDataRole, MessageRole>;

/// Chooses the role. `version` is the line that `--version` prints. Pure.
LaunchRole launchRole(const std::vector<std::string>& arguments, const std::string& version);

}  // namespace murmel
