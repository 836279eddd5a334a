#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Platform/ClipboardPasteboard.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// A clipboard in memory, with other applications that write to it and read it. Operations are answered from
/// the loop, one after another. Throws std::logic_error for contents that no clipboard could hold.
class FakePasteboard final : public ClipboardPasteboard {
 public:
  FakePasteboard(Executor& executor, const Clock& clock);
  ~FakePasteboard() override;

  Task<std::int64_t> changeCount() override;
  Task<ClipboardCapture> capture() override;
  Task<std::optional<std::string>> data(std::string type) override;
  Task<std::optional<std::int64_t>> mrmReplace(ClipboardSnapshot contents) override;
  Task<std::optional<std::int64_t>> mrmReplaceFor(DesktopClient onlyReader,
                                                  ClipboardSnapshot contents) override;
  Task<std::optional<std::int64_t>> mrmReplaceIfUnchanged(SharedSnapshot contents,
                                                          std::int64_t expected) override;
  Task<bool> serveEverybody(std::int64_t changeCount) override;
  [[nodiscard]] Registration onRead(std::function<void(const ClipboardRead&)> handler) override;
  [[nodiscard]] Registration onForeignChange(std::function<void(std::int64_t)> handler) override;
  Task<ClipboardHandOver> handOver() override;

  /// Another application writes.
  void writeByAnother(ClipboardSnapshot contents);
  /// Another application reads one form ("TARGETS" for the list of them); what it gets. The read is reported
  /// when the contents are ours.
  std::optional<std::string> readBy(const DesktopClient& reader, const std::string& type);
  [[nodiscard]] const ClipboardSnapshot& contents() const;

  /// The present contents are delivered only after `delay`; those who capture them get nothing before.
  void makeOwnerSlow(Duration delay);
  /// From now on it takes so long to write to the clipboard.
  void makeReplacingSlow(Duration delay);
  /// From now on the clipboard cannot be taken, or can be again.
  void refuseReplacing(bool refuses = true);

 private:
  struct State;
  template <class Operation>
  auto perform(Duration delay, Operation operation);

  Executor& executor_;
  std::shared_ptr<State> state_;
};

}  // namespace murmel
