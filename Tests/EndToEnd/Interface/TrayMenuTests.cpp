#include "Interface/Menu/TrayMenu.h"
#include "Interface/Notices/NoticeChannel.h"
#include "Platform/Qt/TrayWatch.h"
#include "Support/BuildPaths.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/WindowTests.h"

namespace {

using Case = DictationState::Case;

/// The desktop's side. It comes later than the application, as panels do after log-in.
std::unique_ptr<test::ApplicationProcess>& desktop() {
  static std::unique_ptr<test::ApplicationProcess> process;
  return process;
}

void startDesktop() {
  desktop() = std::make_unique<test::ApplicationProcess>(
      std::vector<std::string>{buildFolder() + "/tests/status-notifier-host"});
}

class Tray : public ::testing::Test, public Microphones {
 protected:
  void SetUp() override {
    if (!desktop()) {
      EXPECT_EQ(watch.tray(), TrayWatch::Tray::none);
      startDesktop();
    }
    ASSERT_TRUE(waitUntil([&] { return watch.tray() == TrayWatch::Tray::statusNotifier; }));
    const auto before = desktop()->told("item").size();
    tray.appear();
    ASSERT_TRUE(waitUntil([&] { return desktop()->told("item").size() > before; }));
  }
  void show(const DictationState& state) {
    status.state = state;
    tray.refresh();
  }
  std::string menu() {
    const auto before = desktop()->told("menu").size();
    desktop()->tell("menu");
    if (!waitUntil([&] { return desktop()->told("menu").size() > before; })) return "no answer";
    return desktop()->told("menu").back();
  }
  /// Qt tells menu changes a little later than it makes them.
  void expectMenu(const std::string& entries) {
    std::string last;
    EXPECT_TRUE(waitUntil([&] { return (last = menu()) == entries; })) << last;
  }
  void click(const std::string& entry) {
    const auto before = calls.size();
    desktop()->tell("click " + entry);
    EXPECT_TRUE(waitUntil([&] { return calls.size() > before; })) << entry;
  }

  void list(std::function<void(std::vector<MicrophoneSource>)> answer) override {
    answer({{"one", "Headset", false}, {"two", "Built-in", true}});
  }
  void choose(const std::string& name, std::function<void(bool)> /*answer*/) override {
    calls.push_back("microphone " + name);
  }
  std::function<void()> call(const char* name) {
    return [this, name] { calls.emplace_back(name); };
  }

  std::vector<std::string> calls;
  MenuStatus status{
      .state = Case::ready, .shortcut = "Ctrl+Super", .language = "German only", .model = "Whisper base"};
  TrayWatch watch;
  TrayMenu tray{{
      .status = [this] { return status; },
      .recent =
          [] {
            return std::vector{SpokenText("Fish & chips"), SpokenText(std::string(80, 'w'))};
          },
      .copy = [this](const SpokenText& words) { calls.push_back("copy " + words.reveal().substr(0, 12)); },
      .microphones = this,
      .toggle = call("toggle"),
      .cancel = call("cancel"),
      .retry = call("retry"),
      .copyLast = call("copy"),
      .pasteLast = call("paste"),
      .bringBackClipboard = call("clipboard"),
      .pause = [this](bool paused) { calls.emplace_back(paused ? "pause" : "resume"); },
      .openSettings = call("settings"),
      .openShortcut = call("shortcut"),
      .openLanguages = call("languages"),
      .openModels = call("models"),
      .openHistory = call("history"),
      .openSetup = call("setup"),
      .openCredits = call("credits"),
      .openAbout = call("about"),
      .quit = call("quit"),
  }};
};

TEST_F(Tray, offers_what_can_be_done_in_each_state) {
  const std::string rest =
      ";Microphone;[Looking…];Shortcut: Ctrl+Super;Language: German only;Speech Model: Whisper base;Pause "
      "Murmel;Settings…;History…;Setup and Permissions…;Credits…;About Murmel;Quit Murmel";
  const auto none = ";[Try Again];[Copy Last Dictation];[Paste Last Dictation Again]" + rest;
  expectMenu("[Ready];Start Dictation;[Discard Dictation]" + none);
  show(Case::listening);
  expectMenu("[Listening… release shortcut];Stop Dictation;Discard Dictation" + none);
  show(Case::transcribing);
  expectMenu("[Transcribing locally…];[Start Dictation];Discard Dictation" + none);
  status.hasLastTranscript = status.canRetry = status.canBringBackClipboard = true;
  show(Case::success);
  expectMenu(
      "[Inserted];Start Dictation;[Discard Dictation];Try Again;Copy Last Dictation;Paste Last Dictation "
      "Again;Bring Back the Clipboard" +
      rest);
}

TEST_F(Tray, does_what_is_chosen) {
  status.hasLastTranscript = status.canRetry = status.canBringBackClipboard = true;
  show(Case::ready);
  ASSERT_TRUE(waitUntil([this] { return menu().find("[Copy") == std::string::npos; }));
  for (const char* entry :
       {"Start Dictation", "Try Again", "Paste Last Dictation Again", "Bring Back the Clipboard",
        "Shortcut: Ctrl+Super", "Language: German only", "Speech Model: Whisper base", "Pause Murmel"})
    click(entry);
  EXPECT_EQ(calls, (std::vector<std::string>{"toggle", "retry", "paste", "clipboard", "shortcut", "languages",
                                             "models", "pause"}));
}

TEST_F(Tray, has_words_of_the_history_only_while_their_menu_is_open) {
  status.keepsHistory = true;
  show(Case::ready);
  ASSERT_TRUE(waitUntil([this] { return menu().find("Copy from History") != std::string::npos; }));
  EXPECT_EQ(menu().find("Fish"), std::string::npos);
  desktop()->tell("opened Copy from History");  // "_" marks the letter behind it for the keyboard
  ASSERT_TRUE(waitUntil([this] { return menu().find("Fish _& chips") != std::string::npos; }));
  EXPECT_EQ(menu().find(std::string(60, 'w')), std::string::npos) << "no more than a line of it";
  click("Fish _& chips");
  EXPECT_EQ(calls, std::vector<std::string>{"copy Fish & chips"});
  desktop()->tell("closed Copy from History");
  EXPECT_TRUE(waitUntil([this] { return menu().find("Fish") == std::string::npos; }));
}

TEST_F(Tray, is_in_a_panel_again_that_was_restarted) {
  const auto watching = watch.changed().subscribe([this] { tray.appear(); });
  desktop().reset();
  ASSERT_TRUE(waitUntil([&] { return watch.tray() == TrayWatch::Tray::none; }));
  startDesktop();
  ASSERT_TRUE(waitUntil([&] { return !desktop()->told("item").empty(); }));
  ASSERT_TRUE(waitUntil([this] { return menu().find("Start Dictation") != std::string::npos; }));
  click("Start Dictation");
  EXPECT_EQ(calls, std::vector<std::string>{"toggle"});
}

TEST_F(Tray, lets_one_choose_the_microphone_of_the_desktop) {
  desktop()->tell("opened Microphone");
  ASSERT_TRUE(waitUntil([this] { return menu().find("Headset") != std::string::npos; }));
  click("Headset");
  EXPECT_EQ(calls, std::vector<std::string>{"microphone one"});
}

TEST(Notices, take_the_first_road_that_is_open) {
  for (const int open : {0, 1, 2}) {
    std::string taken;
    NoticeChannel channel({
        .tray = [&](auto&&...) { return open == 0 && !(taken += "tray").empty(); },
        .desktop =
            [&](const QString&, const QString&, const std::function<void(bool)>& answer) {
              if (open == 1) taken += "desktop";
              answer(open == 1);
            },
        .window = [&](const QString&, const QString& text) { taken += "window: " + text.toStdString(); },
    });
    channel.tell("Murmel", "All is well.");
    EXPECT_EQ(taken, (std::array<std::string, 3>{"tray", "desktop", "window: All is well."}.at(open)));
  }
}

TEST_F(Tray, starts_and_stops_by_a_click_on_the_icon) {
  desktop()->tell("activate");
  EXPECT_TRUE(waitUntil([this] { return !calls.empty(); }));
  EXPECT_EQ(calls, std::vector<std::string>{"toggle"});
}

const test::Surroundings trayDesktop(__FILE__, [] {
  auto application = test::windowApplication();
  return std::shared_ptr<void>(nullptr, [application](void*) mutable {
    application.reset();
    desktop().reset();
  });
});

}  // namespace
