#include "Interface/TrayMenu.h"
#include "Support/BuildPaths.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/WindowTests.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <poll.h>

using namespace murmel;
using murmel::test::waitUntil;

namespace {

using Case = DictationState::Case;

/// The desktop's side. It must be there before the application, which looks for a tray once.
std::unique_ptr<test::ApplicationProcess>& desktop() {
  static std::unique_ptr<test::ApplicationProcess> process;
  return process;
}

class Tray : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto before = desktop()->told("item").size();
    tray.show();
    ASSERT_TRUE(waitUntil([&] { return desktop()->told("item").size() > before; }));
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

  std::vector<std::string> calls;
  TrayMenu tray{{
      .toggle = [this] { calls.emplace_back("toggle"); },
      .cancel = [this] { calls.emplace_back("cancel"); },
      .retry = [this] { calls.emplace_back("retry"); },
      .copyLast = [this] { calls.emplace_back("copy"); },
      .bringBackClipboard = [this] { calls.emplace_back("clipboard"); },
      .openSettings = [this] { calls.emplace_back("settings"); },
      .openHistory = [this] { calls.emplace_back("history"); },
      .openSetup = [this] { calls.emplace_back("setup"); },
      .openAbout = [this] { calls.emplace_back("about"); },
      .quit = [this] { calls.emplace_back("quit"); },
  }};
};

TEST_F(Tray, offers_what_can_be_done_in_each_state) {
  const std::string rest =
      ";[Bring Back the Clipboard];Settings…;History…;Setup and Permissions…;About Murmel;Quit Murmel";
  expectMenu("[Ready];Start Dictation;[Discard Dictation];[Try Again];[Copy Last Dictation]" + rest);
  tray.update(Case::listening);
  expectMenu(
      "[Listening… release shortcut];Stop Dictation;Discard Dictation;[Try Again];[Copy Last Dictation]" +
      rest);
  tray.update(Case::transcribing);
  expectMenu("[Transcribing locally…];[Start Dictation];Discard Dictation;[Try Again];[Copy Last Dictation]" +
             rest);
  tray.update(Case::success);
  tray.setHasLastTranscript(true);
  tray.setCanRetry(true);
  expectMenu("[Inserted];Start Dictation;[Discard Dictation];Try Again;Copy Last Dictation" + rest);
  tray.setHasLastTranscript(false);
  tray.setCanRetry(false);
  expectMenu("[Inserted];Start Dictation;[Discard Dictation];[Try Again];[Copy Last Dictation]" + rest);
}

TEST_F(Tray, does_what_is_chosen) {
  tray.setHasLastTranscript(true);
  tray.setCanRetry(true);
  click("Start Dictation");
  tray.update(Case::listening);
  expectMenu(
      "[Listening… release shortcut];Stop Dictation;Discard Dictation;Try Again;Copy Last Dictation;[Bring "
      "Back the Clipboard];"
      "Settings…;History…;Setup and Permissions…;About Murmel;Quit Murmel");
  click("Stop Dictation");
  click("Discard Dictation");
  click("Try Again");
  click("Copy Last Dictation");
  click("Setup and Permissions…");
  click("Quit Murmel");
  EXPECT_EQ(calls,
            (std::vector<std::string>{"toggle", "toggle", "cancel", "retry", "copy", "setup", "quit"}));
}

TEST_F(Tray, starts_and_stops_by_a_click_on_the_icon) {
  desktop()->tell("activate");
  EXPECT_TRUE(waitUntil([this] { return !calls.empty(); }));
  EXPECT_EQ(calls, std::vector<std::string>{"toggle"});
}

}  // namespace

int main(int argumentCount, char** arguments) {
  desktop() = std::make_unique<test::ApplicationProcess>(
      std::vector<std::string>{buildFolder() + "/tests/status-notifier-host"});
  constexpr int lookEveryMilliseconds = 10;
  for (int look = 0; look < 1'000 && desktop()->told("ready").empty(); ++look)
    ::poll(nullptr, 0, lookEveryMilliseconds);
  const int status = test::runWindowTests(argumentCount, arguments);
  desktop().reset();
  return status;
}
