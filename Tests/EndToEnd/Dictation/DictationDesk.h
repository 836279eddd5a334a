#pragma once

#include "EndToEnd/Delivery/DeliveryDesk.h"
#include "Support/BuildPaths.h"
#include "Support/FileBytes.h"
#include "Support/Pulse.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace murmel::test {

/// What is said, and the word by which its text is known again. Short words between may get lost on the way
/// through a sound server on a busy machine; these do not.
struct Speech {
  const char* recording;
  const char* word;
};

/// Recordings of pocketsphinx-testdata, of one voice.
inline constexpr Speech tenOfClubs{"001", "ten"};
inline constexpr Speech sevenOfClubs{"003", "seven"};
inline constexpr Speech eightOfSpadesAndMore{"005", "spades"};  ///< of three seconds and a half

inline std::size_t countOf(const std::string& needle, const std::string& text) {
  std::size_t count = 0;
  for (auto at = text.find(needle); at != std::string::npos; at = text.find(needle, at + 1)) ++count;
  return count;
}

/// That the texts of these recordings are there, in this order, and each of them once.
inline void expectOnceEach(const std::string& text, const std::vector<Speech>& spoken) {
  std::size_t end = 0;
  for (const auto& speech : spoken) {
    EXPECT_EQ(countOf(speech.word, text), 1U) << text;
    const auto at = text.find(speech.word);
    EXPECT_TRUE(at != std::string::npos && at >= end) << text;
    end = at;
  }
}

inline constexpr std::uint8_t controlKey = 37;

/// A user at a desktop with a microphone, and Murmel on it.
class DictationDesk : public ::testing::Test {
 protected:
  static constexpr std::uint8_t optionKey = 64;

  void SetUp() override {
    std::filesystem::remove_all(configuration());
    std::filesystem::create_directories(configuration());
    settings(R"("settings.shortcut": "optionKey")");
  }
  void TearDown() override {
    if (murmel && !murmel->exitStatus()) quit();
  }

  static std::filesystem::path sessionFolder() { return std::getenv("MURMEL_SESSION_DIRECTORY"); }
  static std::filesystem::path home() { return std::getenv("HOME"); }
  static std::filesystem::path configuration() {
    return std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "MRM";
  }
  static std::filesystem::path data() { return std::filesystem::path(std::getenv("XDG_DATA_HOME")) / "MRM"; }
  /// A file of the desktop's that is no concern of Murmel's.
  std::filesystem::path file(const std::string& name) const { return folder.path() / name; }

  /// The settings with which Murmel starts next; the setup has been done.
  static void settings(const std::string& members) {
    writeFile(configuration() / "defaults.json", R"({"onboarding.completed": true, )" + members + "}");
  }

  bool waitUntil(const std::function<bool()>& condition) { return desk.waitUntil(condition); }
  /// The same for conditions that take programs to ask.
  bool waitUntilCommand(const std::string& command) {
    return desk.loop.waitUntil([&] {
      if (succeeds(command)) return true;
      desk.loop.runFor(std::chrono::milliseconds(30));
      return false;
    });
  }

  static constexpr const char* pillIsVisible = "xdotool search --onlyvisible --name '^Murmel$'";
  static constexpr const char* settingsAreVisible = "xdotool search --onlyvisible --name '^Murmel Settings$'";
  static constexpr const char* setupIsVisible = "xdotool search --onlyvisible --name '^Murmel Setup$'";
  // One stream is the session's own, which keeps the microphone awake.
  static constexpr const char* isRecording = "pactl list short source-outputs | sed 1d | grep -q .";

  /// Runs one of the commands that reach the running application; its exit status.
  static int command(const std::string& name) {
    const int status = std::system((std::string(MURMEL_EXECUTABLE) + " " + name + " 2>/dev/null").c_str());
    return WEXITSTATUS(status);
  }

  /// Starts Murmel and waits until it can dictate.
  void start(const std::string& executable = MURMEL_EXECUTABLE) {
    murmel.emplace(Strings{executable}, file("murmel.log"));
    const std::string status = std::string(MURMEL_EXECUTABLE) + " status";
    ASSERT_TRUE(waitUntilCommand(status)) << murmel->log();
    // While the model is being verified the indicator says so.
    ASSERT_TRUE(waitUntilCommand(std::string("! ") + pillIsVisible)) << murmel->log();
  }
  void quit() {
    EXPECT_EQ(command("quit"), 0);
    EXPECT_TRUE(waitUntil([&] { return murmel->exitStatus().has_value(); }));
    EXPECT_EQ(murmel->exitStatus(), 0) << murmel->log();
  }
  [[nodiscard]] std::size_t dictationsSummed() const { return countOf("dictation_stop ", murmel->log()); }

  /// Another installation of this build; its folder.
  [[nodiscard]] std::string installCopy() const {
    const auto copy = file("copy").string();
    outputOf("mkdir -p " + copy + "/bin " + copy + "/lib && cp " + MURMEL_EXECUTABLE + " " + copy +
             "/bin && cp -r " + buildFolder() + "/lib/murmel " + copy + "/lib");
    return copy;
  }

  /// Holds the shortcut, until the microphone is open.
  void holdShortcut() {
    desk.user.press(optionKey, true);
    ASSERT_TRUE(waitUntilCommand(isRecording)) << murmel->log();
  }
  void releaseShortcut() { desk.user.press(optionKey, false); }
  /// Says something into the microphone; returns when the last sample was heard. All of it is handed over
  /// before it begins to sound: a player that is starved on a busy machine leaves gaps, and gaps become other
  /// words.
  static void say(const Speech& speech, const std::string& sink = "mic") {
    const auto path = std::string("/usr/share/pocketsphinx/test/data/cards/") + speech.recording + ".wav";
    outputOf("paplay --latency-msec=5000 -d " + sink + " " + path);
  }
  void dictate(const Speech& speech) {
    holdShortcut();
    say(speech);
    releaseShortcut();
  }

  /// An editor, in front, that writes what stands in it to a file at once.
  std::unique_ptr<ApplicationProcess> openEditor(const std::string& name) {
    auto editor = std::make_unique<ApplicationProcess>(
        std::vector<std::string>{buildFolder() + "/tests/qt-editor", file(name)});
    EXPECT_TRUE(waitUntil([&] { return desk.isInFront(*editor); }));
    // A busy window manager may give the front back to the window before it: this user looks again and
    // clicks.
    const auto application = desk.workspace().frontmostApplication();
    for (int look = 0; look < 3 && application; ++look) {
      desk.loop.runFor(std::chrono::milliseconds(150));
      if (desk.isInFront(*editor)) continue;
      desk.workspace().activate(*application);
      EXPECT_TRUE(waitUntil([&] { return desk.isInFront(*editor); }));
    }
    return editor;
  }
  [[nodiscard]] std::string textIn(const std::string& name) const { return contentsOf(file(name)); }
  ::testing::AssertionResult waitForText(const std::string& text, const std::string& name) {
    if (waitUntil([&] { return textIn(name).find(text) != std::string::npos; }))
      return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "there is \"" << textIn(name) << '"';
  }
  bool waitForClipboard(const std::string& text) {
    return waitUntil([&] { return DeliveryDesk::clipboardText().find(text) != std::string::npos; });
  }
  bool waitForSummaries(std::size_t count) {
    return waitUntil([&] { return dictationsSummed() >= count; });
  }

  /// Which files below a folder hold a word.
  static std::string filesThatHold(const std::string& word, const std::filesystem::path& below) {
    return outputOf("grep -rlai '" + word + "' '" + below.string() + "' || true");
  }

  TemporaryFolder folder;
  DeliveryDesk desk;
  std::optional<ChildProgram> murmel;  ///< what it says goes to a file
};

}  // namespace murmel::test
