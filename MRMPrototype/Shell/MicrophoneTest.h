#pragma once

#include "Audio/AudioCaptureService.h"
#include "Foundation/Async/Scope.h"
#include "Interface/Settings/SettingsServices.h"

#include <memory>

namespace murmel {

/// Listens to the microphone for the windows, by a recording of its own beside that of a dictation. What it
/// hears becomes a level and is thrown away. Main thread.
class MicrophoneTest final : public MicrophoneTrial {
 public:
  /// The references outlive this.
  MicrophoneTest(Executor& executor, AudioInput& input, MicrophoneAuthorization& authorization,
                 const std::filesystem::path& temporaryFolder);

  Registration listen(std::function<void(double level)> level,
                      std::function<void(const std::string&)> failed) override;

 private:
  Task<void> begin();
  Task<void> goOn();
  void tick();
  void fail(const std::string& sentence);
  void end();

  Executor& executor_;
  AudioCaptureService capture_;
  std::function<void(double)> level_;
  std::function<void(const std::string&)> failed_;
  Registration timer_;
  std::shared_ptr<int> trial_;  ///< of now: a handle of an earlier one ends nothing
  Scope tasks_;
};

}  // namespace murmel
