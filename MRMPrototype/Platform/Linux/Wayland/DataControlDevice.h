#pragma once

#include "Platform/Linux/Wayland/DataControlSelection.h"

#include <memory>
#include <optional>

namespace murmel {

/// The selections of the seat, on a loop that has not been started yet.
class DataControlDevice {
 public:
  /// Null where the compositor offers no clipboard to programs without a window.
  static std::unique_ptr<DataControlDevice> open(TransferLoop& loop, const Clock& clock,
                                                 SelectionObserver clipboard, SelectionObserver primary,
                                                 ClipboardKeeper* keeper);

  [[nodiscard]] DataControlSelection& clipboard() { return *clipboard_; }
  /// Null where the compositor does not tell of it.
  [[nodiscard]] DataControlSelection* primary() { return primary_ ? &*primary_ : nullptr; }

 private:
  using Offer = DataControlSelection::Offer;

  DataControlDevice() = default;
  void introduced(zwlr_data_control_offer_v1* offer);
  std::unique_ptr<Offer> take(zwlr_data_control_offer_v1* offer);

  WaylandObject<zwlr_data_control_manager_v1> manager_;
  WaylandObject<zwlr_data_control_device_v1> device_;
  std::vector<std::unique_ptr<Offer>> introduced_;  ///< and not yet said what for
  std::optional<DataControlSelection> clipboard_;
  std::optional<DataControlSelection> primary_;
};

}  // namespace murmel
