#pragma once

#include "Audio/CapturedAudio.h"
#include "Foundation/Crypto/SecretBytes.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace murmel {

/// The sound of one dictation, kept so that it can be recognised once more. It is sealed under a key that is
/// in locked memory only, is left out of dumps and goes with this object: whatever of it reaches swap or a
/// dump cannot be heard, however long the dictation and however little memory the system lets us lock.
class KeptRecording {
 public:
  KeptRecording();

  /// Where a part cannot be sealed the whole recording is given up: half of it would be recognised as other
  /// words.
  void append(const PendingCapturedAudio& audio);

  [[nodiscard]] bool empty() const { return parts_.empty(); }
  /// Hands the parts over one by one, in order, at the rate of the recogniser. False when one cannot be
  /// opened; none is handed over after it.
  [[nodiscard]] bool replay(const std::function<void(PendingCapturedAudio)>& take) const;

 private:
  SecretBytes key_;
  bool usable_ = true;
  std::vector<std::vector<std::uint8_t>> parts_;  ///< sealed
};

}  // namespace murmel
