#pragma once

#include "Delivery/TextInsertionService.h"
#include "Foundation/Async/Scope.h"
#include "Platform/Fake/FakeFocusedField.h"
#include "Platform/Fake/FakeKeyboardPoster.h"
#include "Platform/Fake/FakePasteboard.h"
#include "Platform/Fake/FakeSecureInput.h"
#include "Platform/Fake/FakeWorkspace.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/MemoryLogSink.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace murmel::test {

inline constexpr pid_t ownProcess = 4'000;

inline RunningApplication application(pid_t process, std::string windowClass) {
  RunningApplication running;
  running.client = {process, static_cast<std::uint32_t>(process) * 16};
  running.bundleIdentifier = std::move(windowClass);
  running.window = static_cast<std::uint32_t>(process) * 16 + 1;
  return running;
}

inline ClipboardSnapshot plainText(const std::string& text) {
  return {{{{{"UTF8_STRING", text, "", 8}}}}};
}

/// What the user had on the clipboard before.
inline ClipboardSnapshot richClipboard() {
  return {{{{{"text/html", "<b>old</b>", "", 8},
             {"UTF8_STRING", "old", "", 8},
             {"image/png", std::string("\x89PNG\0\r\n", 7), "", 8},
             {"numbers", std::string(8, '\1'), "INTEGER", 32}}}}};
}

/// A desktop of fakes with an editor in front, and the service on it.
class DeliveryHarness {
 public:
  explicit DeliveryHarness(bool restoresClipboard = true) {
    workspace.bringToFront(editor);
    general.writeByAnother(richClipboard());
    primary.writeByAnother(plainText("selected"));
    TextInsertionOptions options;
    options.applicationIdentifier = "app.murmel.Test";
    options.ownProcess = ownProcess;
    options.shouldRestorePreviousClipboard = restoresClipboard;
    service.emplace(
        TextInsertionDesktop{executor, executor, workspace, keyboard, secureInput, general, &primary, &field},
        std::move(options), Logger(log, "app.murmel.Test", "text-insertion"));
    settlements = service->onPasteSettled([this](PasteSettlement how) { settled.push_back(how); });
    executor.advance(std::chrono::seconds(1));
  }

  /// The target reads the clipboard this long after the paste; what it got stands in `read`.
  void readAfter(Duration delay, FakePasteboard* from = nullptr) {
    auto* pasteboard = from == nullptr ? &general : from;
    keyboard.onPosted([this, delay, pasteboard](PasteChord) {
      reading.push_back(executor.after(delay, [this, pasteboard] {
        read.push_back(pasteboard->readBy(editor.client, "UTF8_STRING").value_or("(nothing)"));
      }));
    });
  }

  template <class T>
  void start(Task<T> task, std::optional<T>& result) {
    scope.start(keep(std::move(task), result));
  }

  /// Runs a delivery and returns its result, which must come within ten seconds.
  TextDeliveryResult deliver(const std::string& text) {
    std::optional<TextDeliveryResult> result;
    start(service->insertOrCopy(SpokenText(text), false), result);
    for (int step = 0; step < 1'000 && !result; ++step) executor.advance(std::chrono::milliseconds(10));
    return result.value();
  }

  [[nodiscard]] std::string clipboardText() const {
    const auto* value = general.contents().find("UTF8_STRING");
    return value == nullptr ? "(nothing)" : value->data;
  }

  ManualExecutor executor;
  MemoryLogSink log;
  RunningApplication editor = application(100, "Mousepad");
  FakeWorkspace workspace{executor};
  FakeKeyboardPoster keyboard{executor, workspace};
  FakeSecureInput secureInput;
  FakeFocusedField field;
  FakePasteboard general{executor, executor};
  FakePasteboard primary{executor, executor};
  std::optional<TextInsertionService> service;
  std::vector<PasteSettlement> settled;
  std::vector<std::string> read;

 private:
  template <class T>
  static Task<void> keep(Task<T> task, std::optional<T>& result) {
    T value = co_await task;
    result = std::move(value);
  }

  Registration settlements;
  std::vector<Registration> reading;

 public:
  Scope scope;
};

}  // namespace murmel::test
