#include "DeliveryDesk.h"
#include "Support/BuildPaths.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace murmel::test {

namespace {

std::string contentsOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Row {
  const char* name;
  const char* windowClass;
  std::vector<std::string> command;  ///< FILE stands for the file that the text ends up in
  bool savesOnRequest = false;       ///< by Ctrl+S
  bool isTerminal = false;
};

/// A program in a terminal that writes what it is given, unchanged and at once. It makes the file when the
/// terminal is set up.
std::string recorder(const std::string& file) {
  return "stty raw -echo; exec cat > '" + file + "'";
}

}  // namespace

TEST(DeliveryToRealApplications, TheTextArrivesOnceAndTheClipboardIsAsBefore) {
  const std::string folder = std::getenv("MURMEL_SESSION_DIRECTORY");
  const auto file = [&](const std::string& name) { return folder + "/" + name + ".txt"; };
  const Row rows[] = {
      {"a GTK editor", "Mousepad", {"mousepad", "--disable-server", file("gtk")}, true},
      {"an editor made with Qt", "qt-editor", {buildFolder() + "/tests/qt-editor", file("qt")}},
      {"xterm", "XTerm", {"xterm", "-u8", "-e", "sh", "-c", recorder(file("xterm"))}, false, true},
      {"a VTE terminal",
       "Xfce4-terminal",
       {"xfce4-terminal", "--disable-server", "-x", "sh", "-c", recorder(file("vte"))},
       false,
       true},
  };
  const std::string names[] = {"gtk", "qt", "xterm", "vte"};
  const std::string spoken = "Grüße, Welt — once.";
  for (std::size_t index = 0; index < std::size(rows); ++index) {
    const auto& row = rows[index];
    SCOPED_TRACE(row.name);
    const auto path = file(names[index]);
    DeliveryDesk desk;
    const ApplicationProcess application(row.command);
    ASSERT_TRUE(desk.waitUntil([&] {
      const auto front = desk.workspace().frontmostApplication();
      const bool isReady = !row.isTerminal || std::filesystem::exists(path);
      return isReady && front && front->bundleIdentifier == row.windowClass;
    }));

    desk.begin();
    EXPECT_EQ(desk.deliver(spoken), TextDeliveryResult::insertionSent);
    desk.service->endDictationSession();
    ASSERT_TRUE(desk.waitUntilSettled());
    EXPECT_EQ(desk.settled.front(), PasteSettlement::clipboardRestored);
    if (row.savesOnRequest) {
      for (const auto& [key, down] : {std::pair{37, true}, {39, true}, {39, false}, {37, false}})
        desk.user.press(static_cast<std::uint8_t>(key), down);
    }
    EXPECT_TRUE(desk.waitUntil([&] { return contentsOfFile(path).starts_with(spoken); }))
        << contentsOfFile(path);
    EXPECT_EQ(contentsOfFile(path).find(spoken, 1), std::string::npos) << "once";
    EXPECT_LE(contentsOfFile(path).size(), spoken.size() + 1) << "and nothing else";
    EXPECT_TRUE(DeliveryDesk::contentsOf("CLIPBOARD") == richClipboard());
    EXPECT_TRUE(DeliveryDesk::contentsOf("PRIMARY") == DeliveryDesk::selection());
    EXPECT_TRUE(desk.user.held().empty());
    EXPECT_EQ(desk.log.lines.find("Welt"), std::string::npos);
  }
}

}  // namespace murmel::test
