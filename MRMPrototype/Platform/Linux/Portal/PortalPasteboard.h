#pragma once

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Signal.h"
#include "Platform/ClipboardPasteboard.h"
#include "Platform/Linux/Portal/RemoteDesktopSession.h"
#include "Platform/Linux/Wayland/TransferLoop.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// The clipboard as the portal gives it to the session that presses keys; nothing can be copied while that is
/// not open. The portal does not tell who reads: whoever does so at once reads everything that is copied and
/// is refused a text that is for one program, later readers are taken for that program. It does not tell of
/// a clipboard that becomes empty either, and has nobody to hand the contents over to. Main thread.
class PortalPasteboard final : public ClipboardPasteboard {
 public:
  /// All outlive this.
  PortalPasteboard(Executor& executor, const Clock& clock, RemoteDesktopSession& session);
  ~PortalPasteboard() override;

  Task<std::int64_t> changeCount() override;
  Task<ClipboardCapture> capture() override;
  Task<std::optional<std::string>> data(std::string type) override;
  Task<std::optional<std::int64_t>> mrmReplace(ClipboardSnapshot contents) override;
  Task<std::optional<std::int64_t>> mrmReplaceFor(DesktopClient onlyReader,
                                                  ClipboardSnapshot contents) override;
  Task<std::optional<std::int64_t>> mrmReplaceIfUnchanged(SharedSnapshot contents,
                                                          std::int64_t expected) override;
  Task<bool> serveEverybody(std::int64_t changeCount) override;
  [[nodiscard]] Registration onRead(std::function<void(const ClipboardRead&)> handler) override {
    return reads_.subscribe(std::move(handler));
  }
  [[nodiscard]] Registration onForeignChange(std::function<void(std::int64_t)> handler) override {
    return changes_.subscribe(std::move(handler));
  }
  Task<ClipboardHandOver> handOver() override;

 private:
  struct Collection;

  void follow();
  void sessionChanged();
  void ownerChanged(sd_bus_message* signal);
  void requested(const std::string& type, std::uint32_t serial);
  void finished(std::uint32_t serial, bool taken, const ClipboardRead& read);
  void leaveOffer();
  /// What the portal has told by now has been heard.
  void catchUp();
  std::optional<std::int64_t> replace(const SharedSnapshot& contents,
                                      std::optional<DesktopClient> onlyReader);
  /// Where the bytes of a form come from; nothing when it is not to be had.
  UniqueDescriptor ask(const std::string& type);
  void collect(const std::shared_ptr<Collection>& collection);

  Executor& executor_;
  const Clock& clock_;
  RemoteDesktopSession& session_;
  std::int64_t changeCount_ = 1;
  std::vector<std::string> offered_;         ///< by another
  std::shared_ptr<int> offer_;               ///< in whose place nothing has come yet
  SharedSnapshot contents_;                  ///< what of ours stands there
  std::optional<DesktopClient> onlyReader_;  ///< of its text; nothing: everybody
  Instant madeAt_{};
  bool isAwaited_ = false;  ///< what of ours the portal has not told of yet
  Signal<const ClipboardRead&> reads_;
  Signal<std::int64_t> changes_;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
  Registration starting_;
  Registration standing_;
  Registration owners_;
  Registration requests_;
  TransferLoop loop_{nullptr};  // last: what it has done is told to what is above
};

}  // namespace murmel
