#pragma once

#include "Platform/ClipboardPasteboard.h"
#include "Platform/Linux/Clipboard/ClipboardKeeper.h"
#include "Platform/Linux/Clipboard/SelectionPasteboard.h"
#include "Platform/Linux/Wayland/TransferLoop.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <wlr-data-control-unstable-v1.h>

namespace murmel {

/// One selection (the clipboard, or what is selected) by the data-control protocol: how often it has changed,
/// what others offer, and its contents while they are ours. On the loop's thread.
class DataControlSelection {
 public:
  enum class Kind { clipboard, primary };

  /// What somebody offers: the forms, and where they are to be had.
  struct Offer {
    WaylandObject<zwlr_data_control_offer_v1> object;
    std::vector<std::string> types{};
  };

  /// `keeper`, if any, is told what is served, and outlives this.
  DataControlSelection(TransferLoop& loop, zwlr_data_control_manager_v1* manager,
                       zwlr_data_control_device_v1* device, Kind kind, const Clock& clock,
                       SelectionObserver observer, ClipboardKeeper* keeper = nullptr);
  ~DataControlSelection();
  DataControlSelection(const DataControlSelection&) = delete;
  DataControlSelection& operator=(const DataControlSelection&) = delete;

  /// What stood there when we came has been told: from here on there are changes.
  void begin() { hasBegun_ = true; }
  /// The compositor tells what stands there now; null: nothing.
  void selected(std::unique_ptr<Offer> offer);

  /// After everything that the compositor has told so far and a round trip to it.
  std::int64_t changeCount();
  /// Everything that stands there, when all of it has come.
  void capture(std::move_only_function<void(ClipboardCapture)> done);
  void data(const std::string& type, std::move_only_function<void(std::optional<std::string>)> done);
  /// Takes the selection, or clears it when there is no value. With `expected` only while the count is that:
  /// the protocol cannot do both in one step, but nobody writes within the round trip between them unless by
  /// chance. With `onlyReader` the plain text is for that program alone.
  std::optional<std::int64_t> replace(SharedSnapshot contents, std::optional<std::int64_t> expected,
                                      std::optional<DesktopClient> onlyReader = std::nullopt);
  bool serveEverybody(std::int64_t changeCount);
  ClipboardHandOver handOver(Duration limit);
  /// Takes the selection if nothing stands there, or only what is given: in the place of a client that served
  /// the same and has ended.
  bool adopt(SharedSnapshot contents);

 private:
  struct Source;

  bool set(const SharedSnapshot& contents, std::optional<DesktopClient> onlyReader);
  bool clear();
  void serve(std::shared_ptr<Source> source);
  void requested(Source& source, const std::string& type, UniqueDescriptor target);
  [[nodiscard]] DesktopClient readerOf(const Source& source, int pipe);
  void report(const DesktopClient& reader, ClipboardRead::Kind kind, std::int64_t changeCount);
  void put(zwlr_data_control_source_v1* source);

  TransferLoop& loop_;
  zwlr_data_control_manager_v1* manager_;
  zwlr_data_control_device_v1* device_;
  Kind kind_;
  const Clock& clock_;
  SelectionObserver observer_;
  ClipboardKeeper* keeper_;

  std::int64_t changeCount_ = 1;
  bool hasBegun_ = false;
  std::unique_ptr<Offer> offer_;     ///< of another
  std::shared_ptr<Source> source_;   ///< what of ours stands there
  std::shared_ptr<Source> awaited_;  ///< what of ours is on its way
  bool awaitsClearing_ = false;
  std::set<pid_t> watchers_;  ///< those that read whatever is copied
};

}  // namespace murmel
