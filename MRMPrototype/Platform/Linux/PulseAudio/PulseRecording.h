#pragma once

#include "Platform/AudioInput.h"
#include "Platform/Linux/PulseAudio/PulseConnection.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <pulse/introspect.h>
#include <pulse/stream.h>

namespace murmel {

/// One recording of the default source, from the connection to its end. Owned by the main thread; the
/// handlers run on the connection's thread, the audio thread.
class PulseRecording {
 public:
  using Outcome = std::expected<AudioFormat, AudioInputError>;
  struct Handlers {
    AudioInput::FragmentHandler onFragment;
    std::move_only_function<void()> onConfigurationChange;  ///< after the beginning only
    std::move_only_function<void(Outcome)> onBegun;  ///< once: after the first fragment, or why there is none
  };

  /// Begins to open the source. Nothing when there is no thread to be had.
  static std::unique_ptr<PulseRecording> open(const PulseServer& server, Handlers handlers);
  /// No handler runs any more when it returns.
  ~PulseRecording();
  PulseRecording(const PulseRecording&) = delete;
  PulseRecording& operator=(const PulseRecording&) = delete;

  /// Waits until everything that the microphone has heard by now has been handed over, but not longer than
  /// `limit`. Main thread.
  void drain(std::chrono::milliseconds limit);

 private:
  struct StreamDeleter {
    void operator()(pa_stream* stream) const { pa_stream_unref(stream); }
  };

  PulseRecording(std::unique_ptr<PulseConnection> connection, Handlers handlers);

  // All on the audio thread, under the connection's lock.
  void contextChanged(pa_context_state_t state);
  void defaultSourceIs(const char* name);
  void sourceIs(const pa_source_info& source);
  void streamChanged();
  void readFragments();
  void handOver(std::span<const float> interleaved);
  void begin(Outcome outcome);
  void changed();
  void lost(AudioInputError error);
  void drainTo(pa_stream* stream);
  void endDrain();

  void watchDefaultSource();
  void askForDefaultSource();

  Handlers handlers_;
  AudioFormat format_;
  std::string defaultSource_;
  bool answered_ = false;
  bool begun_ = false;
  std::uint64_t framesHandedOver_ = 0;
  std::optional<std::uint64_t> drainTarget_;  // frames

  std::mutex drainMutex_;
  std::condition_variable drainEnded_;
  bool drained_ = false;  // behind drainMutex_

  // Last, so that they go first: their callbacks use the rest.
  std::unique_ptr<PulseConnection> connection_;
  std::unique_ptr<pa_stream, StreamDeleter> stream_;
};

}  // namespace murmel
