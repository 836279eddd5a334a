// Clipboard managers write everything that is copied to disk. None of the words may be among it.

#include "RealApplications.h"
#include "Support/FileBytes.h"
#include "Support/ProcessMemory.h"

#include <cstdio>

namespace {

/// The words as they are and as UTF-16, which Qt keeps. They are ASCII.
std::vector<std::string> formsOf(const std::string& words) {
  std::string wide;
  for (const char character : words) wide.append({character, '\0'});
  return {words, wide};
}

std::vector<std::string> filesWith(const std::string& words, const std::string& folder) {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(
           folder, std::filesystem::directory_options::skip_permission_denied)) {
    if (!entry.is_regular_file()) continue;
    const auto bytes = contentsOf(entry.path());
    for (const auto& form : formsOf(words))
      if (bytes.contains(form)) found.push_back(entry.path());
  }
  return found;
}

bool isInMemory(const std::string& words, pid_t process) {
  return ProcessMemory(process).count(formsOf(words)) > 0;
}

struct Manager {
  std::string program;
  std::vector<std::string> command;
  bool writesAtOnce = false;  ///< what it keeps, to files; others do so when they end
};

}  // namespace

TEST(DeliveryBesideClipboardManagers, NoneOfThemFindsAWordOfWhatIsPasted) {
  const Manager managers[] = {
      {"copyq", {"copyq"}},
      {"xfce4-clipman", {"xfce4-clipman"}, true},
      {"parcellite", {"parcellite", "-n"}},
      {"diodon", {"diodon"}, true},
  };
  const std::string home = std::getenv("HOME");
  const std::string copied = "what the user had copied before";
  int tried = 0;
  for (const auto& manager : managers) {
    if (!RealApplicationRun::isInstalled(manager.program)) continue;
    SCOPED_TRACE(manager.program);
    ++tried;
    DeliveryDesk desk(std::nullopt);
    const ApplicationProcess process(manager.command);
    const auto target = desk.launch("Editor");
    const auto copy = [&](const std::string& text) {
      desk.usersClipboard = std::make_unique<ClipboardOwner>(
          "CLIPBOARD", ClipboardSnapshot{{{{{"UTF8_STRING", text, "", 8}}}}});
    };
    // The manager works: it keeps what the user copies. Until then it may still be starting.
    int attempt = 0;
    ASSERT_TRUE(desk.waitUntil([&] {
      copy(copied + " " + std::to_string(++attempt));
      desk.loop.runFor(300ms);
      return isInMemory(copied, process.identifier());
    }));

    const std::string words = "twelve secret sentences dictated";
    const int dictations = triesEverything() ? 10 : 3;
    for (int dictation = 0; dictation < dictations; ++dictation) {
      desk.begin();
      EXPECT_EQ(desk.deliver(words + " " + std::to_string(dictation)), TextDeliveryResult::insertionSent);
      desk.service->endDictationSession();
      ASSERT_TRUE(desk.waitUntilSettled(static_cast<std::size_t>(dictation) + 1));
      EXPECT_EQ(desk.settled.back(), PasteSettlement::clipboardRestored);
    }
    // What the user copies afterwards is kept as ever: by then the manager has dealt with all before it.
    copy("copied afterwards");
    ASSERT_TRUE(desk.waitUntil([&] { return isInMemory("copied afterwards", process.identifier()); }));
    EXPECT_EQ(target->told("pasted").size(), static_cast<std::size_t>(dictations));
    EXPECT_FALSE(isInMemory(words, process.identifier()));
    // The same search finds what it was allowed to keep.
    EXPECT_TRUE(!manager.writesAtOnce || desk.waitUntil([&] { return !filesWith(copied, home).empty(); }));
    std::printf("%s: what was copied is in its memory and in %zu files, what was dictated nowhere\n",
                manager.program.c_str(), filesWith(copied, home).size());
    EXPECT_EQ(filesWith("twelve secret", home), std::vector<std::string>{});
  }
  if (tried == 0) GTEST_SKIP() << "no clipboard manager is installed";
}

TEST(DeliveryBesideABusyOwner, WhatItDeliversLateComesBack) {
  DeliveryDesk desk;
  const auto owner = desk.launch("Owner");
  const auto target = desk.launch("Editor");
  owner->tell("own copied before");
  ASSERT_TRUE(desk.waitUntil([&] { return desk.usersClipboard->hasLost(); }));
  owner->freeze(true);
  desk.service->beginDictationSession();
  desk.loop.runFor(2s);
  owner->freeze(false);
  ASSERT_TRUE(desk.waitUntil([&] { return desk.log.text().contains("clipboard_captured"); }));
  EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::insertionSent);
  ASSERT_TRUE(desk.waitUntilSettled());
  EXPECT_EQ(desk.settled.back(), PasteSettlement::clipboardRestored);
  EXPECT_EQ(DeliveryDesk::clipboardText(), "copied before");
  EXPECT_EQ(target->told("pasted"), Strings{"dictated"});
}
