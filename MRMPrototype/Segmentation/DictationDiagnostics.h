#pragma once

#include "Delivery/LiveInsertionBlock.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace murmel {

/// What happened to the audio of one dictation, in figures: never a word of what was said. The session fills
/// it; the coordinator writes `notice` into the log.
struct DictationDiagnostics {
  double duration = 0;  ///< seconds of audio captured
  /// dBFS of the quietest analysis window; infinite before the first, negative infinity for digital silence.
  double minimumWindowDB = std::numeric_limits<double>::infinity();
  double leadingLowLevelSeconds = 0;     ///< how long the recording began with next to no signal
  std::int64_t segmentsBeforeStop = 0;   ///< recognition requests started before the stop
  std::int64_t completedBeforeStop = 0;  ///< segments whose recognition completed before the stop
  std::int64_t calibrationBatches = 0;   ///< batches of audio that the noise level was estimated from
  std::int64_t empty = 0;                ///< segments whose recognition returned nothing
  std::int64_t carried = 0;              ///< empty segments whose audio was carried into the next segment
  std::int64_t recovered = 0;            ///< empty segments recovered by a retry
  std::int64_t unresolved = 0;           ///< empty segments left unresolved
  std::int64_t successorSalvaged = 0;    ///< segments recognised together with their successor
  double abandonedSeconds = 0;           ///< audio given up without a transcript
  double maximumBacklog = 0;             ///< seconds
  bool everBehind = false;
  bool slowRequestObserved = false;

  /// The summary line of the log. `blocked` is why live insertion stopped, if it did.
  [[nodiscard]] std::string notice(std::optional<LiveInsertionBlock> blocked, bool deviceChanged) const;
};

}  // namespace murmel
