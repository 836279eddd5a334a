#pragma once

#include "DeliveryDesk.h"
#include "Support/BuildPaths.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace murmel::test {

/// A program to deliver to. FILE in its command stands for the file that an editor is to open, SCRIPT for a
/// program that writes to that file what a terminal gives it, unchanged and at once.
struct RealApplication {
  std::string program;
  std::string windowClass;
  std::vector<std::string> command;
  bool isTerminal = false;
  bool savesOnRequest = true;             ///< by Ctrl+S; an editor of ours saves by itself
  std::string preparation = "sleep 0.5";  ///< programs show their window before they take keys
  /// Some put the text that they paste on the clipboard themselves.
  PasteSettlement settlement = PasteSettlement::clipboardRestored;
};

class RealApplicationRun {
 public:
  explicit RealApplicationRun(RealApplication application) : application_(std::move(application)) {
    const std::string folder = std::getenv("MURMEL_SESSION_DIRECTORY");
    const auto name = std::filesystem::path(application_.program).filename().string();
    file_ = folder + "/" + name + ".txt";
    const auto script = folder + "/" + name + ".sh";
    if (!application_.isTerminal) std::ofstream(file_).flush();
    std::ofstream(script) << "#!/bin/sh\nstty raw -echo\nexec cat >'" << file_ << "'\n";
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    for (auto& argument : application_.command) {
      for (const auto& [word, meaning] : {std::pair{std::string("FILE"), file_}, {"SCRIPT", script}}) {
        if (const auto at = argument.find(word); at != std::string::npos)
          argument.replace(at, word.size(), meaning);
      }
    }
  }

  static bool isInstalled(const std::string& program) {
    return std::system(("command -v '" + program + "' >/dev/null").c_str()) == 0;
  }

  /// Delivers to it this often and expects each text once, whole and in order, and the clipboards as they
  /// were.
  void deliver(int dictations) {
    DeliveryDesk desk;
    const ApplicationProcess process(application_.command);
    ASSERT_TRUE(desk.waitUntil([&] {
      const auto front = desk.workspace().frontmostApplication();
      const bool isReady = !application_.isTerminal || std::filesystem::exists(file_);
      return isReady && front && front->bundleIdentifier == application_.windowClass;
    }));
    std::system(application_.preparation.c_str());
    std::string expected;
    for (int dictation = 1; dictation <= dictations; ++dictation) {
      SCOPED_TRACE(dictation);
      const auto text = " Grüße, Welt — " + std::to_string(dictation) + ".";
      expected += text;
      desk.begin();
      const auto result = desk.deliver(text);
      desk.service->endDictationSession();
      ASSERT_TRUE(desk.waitUntilSettled(static_cast<std::size_t>(dictation)));
      ASSERT_EQ(desk.settled.back(), application_.settlement) << desk.log.lines;
      if (application_.settlement == PasteSettlement::clipboardRestored) {
        EXPECT_EQ(result, TextDeliveryResult::insertionSent);
        EXPECT_TRUE(DeliveryDesk::contentsOf("CLIPBOARD") == richClipboard());
      }
      EXPECT_TRUE(DeliveryDesk::contentsOf("PRIMARY") == DeliveryDesk::selection());
    }
    if (!application_.isTerminal && application_.savesOnRequest) {
      for (const auto& [key, down] : {std::pair{37, true}, {39, true}, {39, false}, {37, false}})
        desk.user.press(static_cast<std::uint8_t>(key), down);
    }
    // Some editors end a file with a line of its own.
    EXPECT_TRUE(desk.waitUntil([&] {
      const auto contents = contentsOfFile();
      return contents == expected || contents == expected + "\n";
    })) << contentsOfFile();
    EXPECT_TRUE(desk.user.held().empty());
    EXPECT_EQ(desk.log.lines.find("Welt"), std::string::npos);
  }

 private:
  [[nodiscard]] std::string contentsOfFile() const {
    std::ifstream file(file_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  RealApplication application_;
  std::string file_;
};

}  // namespace murmel::test
