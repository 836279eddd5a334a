#pragma once

#include "DeliveryDesk.h"
#include "Support/BuildPaths.h"
#include "Support/FileBytes.h"
#include "Support/ShellCommand.h"
#include "Support/Testing.h"

#include <iterator>

namespace murmel::test {

/// A program to deliver to. FILE in its command stands for the file that an editor is to open, SCRIPT for a
/// program that writes to that file what a terminal gives it, unchanged and at once, PAGE for a page whose
/// title is what stands in its field.
struct RealApplication {
  std::string program, windowClass;
  std::vector<std::string> command;
  bool isTerminal = false;
  bool savesOnRequest = true;    ///< by Ctrl+S; an editor of ours saves by itself
  std::string preparation = {};  ///< done until it takes keys
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
    std::filesystem::remove(file_);  // of a run before
    if (!application_.isTerminal) std::ofstream(file_).flush();
    std::ofstream(script) << "#!/bin/sh\nstty raw -echo\nexec cat >'" << file_ << "'\n";
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    const auto page = folder + "/" + name + ".html";
    std::ofstream(page) << "<meta charset=utf-8><textarea autofocus oninput='document.title ="
                           " `{${this.value.replaceAll(` `, `_`)}}`'></textarea>";
    for (auto& argument : application_.command) {
      hasPage_ = hasPage_ || argument == "PAGE";
      for (const auto& [word, meaning] :
           {std::pair{std::string("FILE"), file_}, {"SCRIPT", script}, {"PAGE", "file://" + page}}) {
        if (const auto at = argument.find(word); at != std::string::npos)
          argument.replace(at, word.size(), meaning);
      }
    }
  }

  static bool isInstalled(const std::string& program) {
    return std::system(("command -v '" + program + "' >/dev/null").c_str()) == 0;
  }

  /// Delivers to it this often and expects each text once, whole and in order, and the clipboards as they
  /// were: what stands on the desk's, or what `copy` makes another program put there.
  void deliver(int dictations, const std::function<void(DeliveryDesk&)>& copy = {}) {
    DeliveryDesk desk;
    if (copy) copy(desk);
    auto copied = copy ? DeliveryDesk::contentsOf("CLIPBOARD") : richClipboard();
    // An owner that is busy leaves out a form.
    for (int look = 0; copy && look < 5; ++look) {
      const auto before = std::exchange(copied, DeliveryDesk::contentsOf("CLIPBOARD"));
      if (before == copied) break;
    }
    const auto inFrontBefore = desk.workspace().frontmostApplication();
    const ApplicationProcess process(application_.command);
    ASSERT_TRUE(desk.waitUntil([&] {
      const auto front = desk.workspace().frontmostApplication();
      const bool isReady = !application_.isTerminal || std::filesystem::exists(file_);
      return isReady && front && front->bundleIdentifier == application_.windowClass &&
             !(inFrontBefore && isSameWindow(*front, *inFrontBefore));
    }));
    // Programs show their window before they take keys.
    ASSERT_TRUE(desk.waitUntil([&] {
      succeeds(application_.preparation);
      desk.user.strike({letter});
      save(desk.user);
      return desk.loop.waitUntil([&] { return !contents().empty(); }, std::chrono::seconds(1));
    }));
    std::string expected;
    for (int dictation = 1; dictation <= dictations; ++dictation) {
      SCOPED_TRACE(dictation);
      const auto text = " Grüße, Welt — " + std::to_string(dictation) + ".";
      expected += text;
      // The shortcut is held: a lone Alt opens no menu.
      desk.user.press(leftAlt, true);
      desk.begin();
      desk.user.press(leftAlt, false);
      const auto result = desk.deliver(text);
      desk.service->endDictationSession();
      ASSERT_TRUE(desk.waitUntilSettled(static_cast<std::size_t>(dictation)));
      ASSERT_EQ(desk.settled.back(), application_.settlement) << desk.log.text();
      if (application_.settlement == PasteSettlement::clipboardRestored) {
        EXPECT_EQ(result, TextDeliveryResult::insertionSent);
        EXPECT_TRUE(desk.service->clipboardWasKept()) << desk.log.text();
        expectSame(DeliveryDesk::contentsOf("CLIPBOARD"), copied);
      }
      // Editors select what they have copied.
      EXPECT_TRUE(copy || DeliveryDesk::contentsOf("PRIMARY") == DeliveryDesk::selection());
    }
    save(desk.user);
    // Some editors end a file with a line of its own.
    const auto isSaved = [&] {
      const auto all = contents();
      const auto delivered = all.substr(std::min(all.find(' '), all.size()));
      return delivered == expected || delivered == expected + "\n";
    };
    // Kate takes what it has saved itself a moment ago for somebody else's, and asks.
    if (!desk.loop.waitUntil(isSaved, std::chrono::seconds(3)) &&
        std::system("xdotool search --onlyvisible --name '^Possible Data Loss' >/dev/null") == 0)
      desk.user.strike({enter});
    EXPECT_TRUE(desk.waitUntil(isSaved)) << contents();
    EXPECT_TRUE(desk.user.held().empty());
    EXPECT_EQ(desk.log.text().find("Welt"), std::string::npos);
  }

  /// What stands in the editor or has come to the terminal.
  [[nodiscard]] std::string contents() const {
    if (hasPage_)
      succeeds(
          "xdotool getactivewindow getwindowname 2>/dev/null | sed -n 's/^{\\(.*\\)}.*/\\1/p' |"
          " tr -d '\\n' | tr _ ' ' >" +
          file_);
    return contentsOf(file_);
  }

 private:
  /// Byte for byte, but for what is of no use to anybody else than its owner.
  static void expectSame(const ClipboardSnapshot& clipboard, const ClipboardSnapshot& copied) {
    const auto values = [](const ClipboardSnapshot& contents) {
      auto all = contents.items.empty() ? std::vector<ClipboardSnapshot::Value>{} : contents.items[0].values;
      std::erase_if(all, [](const auto& value) {
        return value.data.empty() || value.type == "SAVE_TARGETS" || value.type == "GTK_TEXT_BUFFER_CONTENTS";
      });
      return all;
    };
    const auto now = values(clipboard);
    const auto then = values(copied);
    const auto typesOf = [](const auto& all) {
      std::string types;
      for (const auto& value : all) types += value.type + " (" + std::to_string(value.data.size()) + ")\n";
      return types;
    };
    EXPECT_FALSE(then.empty());
    EXPECT_TRUE(now == then) << "now:\n" << typesOf(now) << "before:\n" << typesOf(then);
  }
  static constexpr std::uint8_t letter = 53;
  static constexpr std::uint8_t enter = 36;
  static constexpr std::uint8_t leftAlt = 64;

  void save(UsersKeyboard& user) const {
    constexpr std::uint8_t control = 37;
    constexpr std::uint8_t letterS = 39;
    if (!application_.isTerminal && !hasPage_ && application_.savesOnRequest) user.strike({control, letterS});
  }
  RealApplication application_;
  std::string file_;
  bool hasPage_ = false;
};

}  // namespace murmel::test
