#pragma once

#include "Delivery/TextInsertionService.h"
#include "Platform/Linux/Accessibility/AccessibleFocusedField.h"
#include "Platform/Linux/X11/X11KeyboardPoster.h"
#include "Platform/Linux/X11/X11Pasteboards.h"
#include "Platform/Linux/X11/X11SecureInput.h"
#include "Support/MemoryLogSink.h"
#include "Support/X11/ClipboardPeer.h"
#include "Support/X11/DesktopOfTargets.h"
#include "Support/X11/UsersKeyboard.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace murmel::test {

/// What the user had copied: several forms of a rich text, a picture of 5 MB, files.
inline ClipboardSnapshot richClipboard() {
  static const auto image = [] {
    std::string bytes("\x89PNG\r\n\x1a\n", 8);
    for (std::size_t index = bytes.size(); index < 5'000'000; ++index)
      bytes += static_cast<char>(index * 2'654'435'761U >> 13);
    return bytes;
  }();
  return {{{{{"text/html", "<b>old</b> clipboard", "", 8},
             {"UTF8_STRING", "old clipboard", "", 8},
             {"STRING", "old clipboard", "", 8},
             {"TEXT", "old clipboard", "UTF8_STRING", 8},
             {"text/plain", "old clipboard", "", 8},
             {"text/plain;charset=utf-8", "old clipboard", "", 8},
             {"image/png", image, "", 8},
             {"text/uri-list", "file:///tmp/one\r\n", "", 8},
             {"x-special/gnome-copied-files", "copy\nfile:///tmp/one", "", 8},
             {"application/x-longs", std::string(400, '\x7F'), "INTEGER", 32}}}}};
}

/// Whether there is time for every program that is installed, ten times over.
inline bool triesEverything() {
  return std::getenv("MURMEL_MANY_DELIVERIES") != nullptr ||
         std::getenv("MURMEL_DESKTOPS_REQUIRED") != nullptr;
}

/// The whole of delivery on a real desktop.
class DeliveryDesk : public X11TargetDesk {
 public:
  explicit DeliveryDesk(const std::optional<ClipboardSnapshot>& clipboard = richClipboard(),
                        OwnerBehaviour behaviour = {}) {
    if (clipboard)
      usersClipboard = std::make_unique<ClipboardOwner>("CLIPBOARD", *clipboard, std::move(behaviour));
    usersSelection = std::make_unique<ClipboardOwner>("PRIMARY", selection());
    pasteboards = *X11Pasteboards::open(loop.executor, loop.clock);
    keyboard = *X11KeyboardPoster::open(loop.executor, nullptr);
    secureInput = *X11SecureInput::open();
    TextInsertionOptions options;
    options.applicationIdentifier = "app.murmel.Test";
    options.ownProcess = ::getpid();
    service.emplace(TextInsertionDesktop{loop.executor, loop.clock, *x11, *keyboard, *secureInput,
                                         pasteboards->general(), &pasteboards->primary(), &field},
                    std::move(options), Logger(log, "app.murmel.Test", "text-insertion"));
    subscription = service->onPasteSettled([this](PasteSettlement how) { settled.push_back(how); });
  }

  /// A dictation begins; it takes at least as long as what the user had copied takes to be captured.
  void begin() {
    const auto captures = [this] {
      std::size_t count = 0;
      for (auto at = log.text().find("clipboard_captured"); at != std::string::npos;
           at = log.text().find("clipboard_captured", at + 1))
        ++count;
      return count;
    };
    const auto before = captures();
    service->beginDictationSession();
    const auto& target = service->target();
    const bool usesPrimary =
        target && PasteChordTable().method(target->bundleIdentifier, target->instanceName).usesPrimary;
    const std::size_t expected = usesPrimary ? 2 : 1;
    waitUntil(
        [&] { return captures() >= before + expected || (usersClipboard && usersClipboard->isStuck()); });
  }
  TextDeliveryResult deliver(const std::string& text) {
    return loop.await(service->insertOrCopy(SpokenText(text), false));
  }
  bool waitUntilSettled(std::size_t count = 1) {
    return waitUntil([&] { return settled.size() >= count; });
  }
  static ClipboardSnapshot selection() { return {{{{{"UTF8_STRING", "selected", "", 8}}}}}; }

  /// Everything that another application finds on a selection, without the protocol's own targets.
  static ClipboardSnapshot contentsOf(const std::string& name) {
    ClipboardReader reader(name);
    std::vector<ClipboardSnapshot::Value> values;
    for (const auto& type : reader.types()) {
      if (type == "TIMESTAMP" || type == "TARGETS" || type == "MULTIPLE") continue;
      if (auto value = reader.read(type)) values.push_back(*std::move(value));
    }
    ClipboardSnapshot contents;
    if (!values.empty()) contents.items.push_back({std::move(values)});
    return contents;
  }
  static std::string clipboardText() {
    const auto value = ClipboardReader("CLIPBOARD").read("UTF8_STRING");
    return value ? value->data : "(nothing)";
  }

  MemoryLogSink log;
  std::unique_ptr<ClipboardOwner> usersClipboard, usersSelection;
  std::unique_ptr<X11Pasteboards> pasteboards;
  std::unique_ptr<X11KeyboardPoster> keyboard;
  std::unique_ptr<X11SecureInput> secureInput;
  AccessibleFocusedField field{loop.executor, std::chrono::seconds(10)};  // the machine may be busy
  UsersKeyboard user;
  std::vector<PasteSettlement> settled;
  std::optional<TextInsertionService> service;
  Registration subscription;
};

}  // namespace murmel::test
