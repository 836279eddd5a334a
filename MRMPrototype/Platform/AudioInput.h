#pragma once

#include "Foundation/Async/Task.h"

#include <cstddef>
#include <expected>
#include <functional>
#include <span>

namespace murmel {

/// How a device delivers its samples.
struct AudioFormat {
  double sampleRate = 0;  ///< Hz, the device's own rate; 0 when there is no usable device.
  unsigned channelCount = 0;
  /// There is no microphone, and the default source is what the speakers play.
  bool hearsSpeakers = false;

  friend bool operator==(const AudioFormat&, const AudioFormat&) = default;
};

enum class AudioInputError {
  noDevice,    ///< there is no source, or it has no usable format
  noServer,    ///< the sound server cannot be reached
  notStarted,  ///< the device did not deliver a first fragment in time, or the stream failed
};

/// The default microphone. One recording at a time.
class AudioInput {
 public:
  /// One fragment of interleaved 32-bit float frames in the format that `start` gave.
  using FragmentHandler =
      std::move_only_function<void(std::span<const float> interleaved, AudioFormat format)>;

  virtual ~AudioInput() = default;

  /// Opens the default source at its own rate and channel count. `onFragment` runs on the audio thread, one
  /// call at a time, from the first fragment on; it must not block. The task gives the format once the first
  /// fragment has been handed to `onFragment`: a device that opens slowly has not begun to record before
  /// that. When the task fails or is destroyed before its end, nothing records and the handler is not called
  /// any more.
  ///
  /// `onConfigurationChange` runs on the audio thread, any number of times, when the source was exchanged,
  /// changed its format, or was lost (the server too).
  virtual Task<std::expected<AudioFormat, AudioInputError>> start(
      FragmentHandler onFragment, std::move_only_function<void()> onConfigurationChange) = 0;

  /// Ends the recording. Everything that the microphone heard up to the moment of the call has been handed to
  /// `onFragment` when it returns, unless the source was lost; no handler runs afterwards. Waits for that at
  /// most 100 ms. Without a recording it does nothing. Main thread.
  virtual void stop() = 0;
};

}  // namespace murmel
