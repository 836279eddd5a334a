#pragma once

#include "Foundation/Async/Executor.h"
#include "Platform/AudioInput.h"
#include "Platform/Linux/PulseAudio/PulseServer.h"

#include <memory>

namespace murmel {

class PulseRecording;

/// The default source of the sound server (PulseAudio, or PipeWire in its place). It connects for each
/// recording, so that nothing listens and nothing runs between them. When the server moves the recording to
/// another source it goes on at its first rate, and the change is reported.
///
/// The executor must outlive it, and it must outlive the tasks that it gives.
class PulseAudioInput final : public AudioInput {
 public:
  PulseAudioInput(Executor& executor, PulseServer server);
  ~PulseAudioInput() override;

  /// Fails with `notStarted` after five seconds without a first fragment.
  Task<std::expected<AudioFormat, AudioInputError>> start(
      FragmentHandler onFragment, std::move_only_function<void()> onConfigurationChange) override;
  void stop() override;

 private:
  class StartGuard;

  Executor& executor_;
  PulseServer server_;
  std::unique_ptr<PulseRecording> recording_;
  bool starting_ = false;
};

}  // namespace murmel
