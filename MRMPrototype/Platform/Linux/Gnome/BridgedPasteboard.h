#pragma once

#include "Platform/ClipboardPasteboard.h"

#include <functional>
#include <memory>
#include <utility>

namespace murmel {

/// The clipboard of GNOME's X server. The shell keeps what was copied and puts it back when the clipboard is
/// cleared, a dictated text too: instead of nothing there is an empty text then. Main thread.
class BridgedPasteboard final : public ClipboardPasteboard {
 public:
  /// `x11` outlives this.
  explicit BridgedPasteboard(ClipboardPasteboard& x11) : x11_(x11) {}

  Task<std::int64_t> changeCount() override { return x11_.changeCount(); }
  Task<ClipboardCapture> capture() override { return x11_.capture(); }
  Task<std::optional<std::string>> data(std::string type) override { return x11_.data(std::move(type)); }
  Task<std::optional<std::int64_t>> mrmReplace(ClipboardSnapshot contents) override {
    return x11_.mrmReplace(contents.isEmpty() ? emptyText() : std::move(contents));
  }
  Task<std::optional<std::int64_t>> mrmReplaceFor(DesktopClient onlyReader,
                                                  ClipboardSnapshot contents) override {
    return x11_.mrmReplaceFor(onlyReader, std::move(contents));
  }
  Task<bool> serveEverybody(std::int64_t changeCount) override { return x11_.serveEverybody(changeCount); }
  Task<std::optional<std::int64_t>> mrmReplaceIfUnchanged(SharedSnapshot contents,
                                                          std::int64_t expected) override {
    return x11_.mrmReplaceIfUnchanged(contents->isEmpty() ? shared(emptyText()) : std::move(contents),
                                      expected);
  }
  [[nodiscard]] Registration onRead(std::function<void(const ClipboardRead&)> handler) override {
    return x11_.onRead(std::move(handler));
  }
  [[nodiscard]] Registration onForeignChange(std::function<void(std::int64_t)> handler) override {
    return x11_.onForeignChange(std::move(handler));
  }
  Task<ClipboardHandOver> handOver() override { return x11_.handOver(); }

 private:
  static ClipboardSnapshot emptyText() { return {{{{{"UTF8_STRING", "", "", 8}}}}}; }

  ClipboardPasteboard& x11_;
};

}  // namespace murmel
