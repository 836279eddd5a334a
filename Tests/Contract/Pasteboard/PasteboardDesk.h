#pragma once

#include "Platform/Fake/FakePasteboard.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Portal/PortalPasteboard.h"
#include "Platform/Linux/Wayland/WaylandPasteboards.h"
#include "Platform/Linux/X11/X11Pasteboards.h"
#include "Support/Awaiting.h"
#include "Support/FileBytes.h"
#include "Support/TemporaryFolder.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/ClipboardPeer.h"

#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace murmel::test {

/// Runs tasks to their end on a loop that serves real threads too.
class TaskRunner {
 public:
  template <class T>
  T await(Task<T> task) {
    Awaiting<T> waiting(std::move(task));
    if (!executor.waitUntil([&] { return waiting.done(); })) throw std::runtime_error("no answer");
    return std::move(*waiting);
  }

  ManualExecutor executor;
};

/// The fake, and the other applications that it brings with it.
class FakeDesk {
 public:
  static constexpr bool asksForForms = true;
  /// What is left of the contents on this desktop.
  static ClipboardSnapshot withForms(ClipboardSnapshot contents) { return contents; }

  TaskRunner runner;
  FakePasteboard board{runner.executor, runner.executor};

  ClipboardPasteboard& pasteboard() { return board; }
  void writeByAnother(const ClipboardSnapshot& contents) { board.writeByAnother(contents); }
  std::optional<std::string> readByAnother(const std::string& type) { return board.readBy(reader(), type); }
  [[nodiscard]] DesktopClient reader() const { return {77, 770}; }
};

/// The clipboard of a real X server, with other clients on connections of their own.
class X11Desk {
 public:
  static constexpr bool asksForForms = true;
  static ClipboardSnapshot withForms(ClipboardSnapshot contents) { return contents; }

  X11Desk() {
    auto opened = X11Pasteboards::open(runner.executor, clock);
    if (!opened) throw std::runtime_error(opened.error());
    boards = *std::move(opened);
  }
  TaskRunner runner;
  SystemClock clock;
  std::unique_ptr<X11Pasteboards> boards;
  std::unique_ptr<ClipboardOwner> owner;
  ClipboardReader otherReader{"CLIPBOARD"};

  ClipboardPasteboard& pasteboard() { return boards->general(); }
  void writeByAnother(const ClipboardSnapshot& contents, OwnerBehaviour behaviour = {}) {
    // The new owner first: otherwise the selection would be nobody's for a moment, which is a change too.
    auto next = std::make_unique<ClipboardOwner>("CLIPBOARD", contents, std::move(behaviour));
    owner = std::move(next);
  }
  std::optional<std::string> readByAnother(const std::string& type) {
    const auto value = otherReader.read(type);
    return value ? std::optional(value->data) : std::nullopt;
  }
  [[nodiscard]] DesktopClient reader() const { return otherReader.client(); }
};

/// The clipboard of a real compositor, with another client on a connection of its own.
class WaylandDesk {
 public:
  static constexpr bool asksForForms = false;
  /// Forms are names and bytes there. The other client knows its contents again by a form of its own.
  static ClipboardSnapshot withForms(ClipboardSnapshot contents) {
    for (auto& item : contents.items) {
      std::erase_if(item.values, [](const auto& value) { return value.type.contains("murmel-offer"); });
      for (auto& value : item.values) value = {value.type, value.data, "", 8};
    }
    return contents;
  }

  WaylandDesk() : other(open()) {
    runner.await(other->general().mrmReplace({}));
    boards = open();
  }
  ClipboardPasteboard& pasteboard() { return boards->general(); }
  void writeByAnother(const ClipboardSnapshot& contents) {
    if (!runner.await(other->general().mrmReplace(contents))) throw std::runtime_error("not written");
  }
  /// Who is refused a text is given an end without a beginning.
  std::optional<std::string> readByAnother(const std::string& type) {
    const auto value = runner.await(other->general().data(type));
    return type == "UTF8_STRING" && value == "" ? std::nullopt : value;
  }
  [[nodiscard]] static DesktopClient reader() { return {::getpid(), 0}; }

  TaskRunner runner;
  SystemClock clock;
  std::unique_ptr<WaylandPasteboards> other, boards;

 private:
  std::unique_ptr<WaylandPasteboards> open() {
    auto opened = WaylandPasteboards::open(runner.executor, clock);
    if (!opened) throw std::runtime_error(opened.error());
    return *std::move(opened);
  }
};

/// The clipboard of a desktop's portal, with another application of the portal's.
class PortalDesk {
 public:
  static constexpr bool asksForForms = false;
  static ClipboardSnapshot withForms(ClipboardSnapshot contents) {
    return WaylandDesk::withForms(std::move(contents));
  }

  PortalDesk() {
    await("ready");
    portal.emplace(*bus, "app.murmel.Test");
    session.emplace(*portal, token, PortalVersions{.keyboard = 2, .clipboard = 1});
    board.emplace(runner.executor, runner.executor, *session);
    session->ask();
    await("asks");
    desktop.tell("allow");
    if (!runner.executor.waitUntil([&] { return session->hasClipboard(); }))
      throw std::runtime_error("no session");
  }
  ClipboardPasteboard& pasteboard() { return *board; }
  void writeByAnother(const ClipboardSnapshot& contents) {
    std::ofstream file(folder.path() / "offer");
    file << "{";
    for (const auto& value : contents.items.front().values) {
      file << (file.tellp() > 1 ? "," : "") << '"' << value.type << "\":\"";
      for (const unsigned char byte : value.data)
        file << "0123456789abcdef"[byte >> 4] << "0123456789abcdef"[byte & 15];
      file << '"';
    }
    file << "}" << std::flush;
    desktop.tell("offer " + (folder.path() / "offer").string());
    await("offered");
  }
  std::optional<std::string> readByAnother(const std::string& type) {
    const auto file = (folder.path() / "read").string();
    desktop.tell("read " + type + " " + file);
    std::vector<std::string> given;
    runner.executor.waitUntil([&] {
      given = desktop.told("given");
      return given.size() + desktop.told("refused").size() > reads;
    });
    ++reads;
    if (given.size() == std::exchange(givenBefore, given.size())) return std::nullopt;
    return contentsOf(file);
  }
  [[nodiscard]] static DesktopClient reader() { return {}; }

  TaskRunner runner;
  TemporaryFolder folder;
  ApplicationProcess desktop{{"/usr/bin/python3", MURMEL_PORTAL}};
  std::unique_ptr<SessionBus> bus = SessionBus::open(runner.executor);
  FakeSecretStore secrets;
  PortalToken token{runner.executor, secrets, "app.murmel.Test.portal"};
  std::optional<Portal> portal;
  std::optional<RemoteDesktopSession> session;
  std::optional<PortalPasteboard> board;

 private:
  void await(const std::string& word) {
    const auto before = seen[word];
    runner.executor.waitUntil([&] { return (seen[word] = desktop.told(word).size()) > before; });
  }
  std::map<std::string, std::size_t> seen;
  std::size_t reads = 0, givenBefore = 0;
};

inline ClipboardSnapshot oneText(const std::string& text) {
  return {{{{{"UTF8_STRING", text, "", 8}}}}};
}

/// Ten types as a rich application offers them, with an image of 5 MB.
inline ClipboardSnapshot tenTypes() {
  std::string image("\x89PNG\r\n\x1a\n", 8);
  for (std::size_t index = image.size(); index < 5'260'000; ++index)
    image += static_cast<char>(index * 2'654'435'761U >> 13);
  std::string numbers(400, '\0');
  for (std::size_t index = 0; index < numbers.size(); ++index) numbers[index] = static_cast<char>(index);
  return {{{{{"image/png", image, "", 8},
             {"text/html", "<p>h\xC3\xA9llo</p>", "", 8},
             {"UTF8_STRING", "h\xC3\xA9llo", "", 8},
             {"STRING", "h\xE9llo", "", 8},
             {"TEXT", "h\xC3\xA9llo", "UTF8_STRING", 8},
             {"text/uri-list", "file:///tmp/a%20b\r\nfile:///tmp/c\r\n", "", 8},
             {"x-special/gnome-copied-files", "copy\nfile:///tmp/a%20b", "", 8},
             {"application/x-words", numbers, "INTEGER", 16},
             {"application/x-longs", numbers, "INTEGER", 32},
             {"application/x-empty", "", "", 8}}}}};
}

}  // namespace murmel::test
