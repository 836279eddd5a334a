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
  /// The references outlive this. `name` is asked for every time.
  MicrophoneTest(Executor& executor, AudioInput& input, MicrophoneAuthorization& authorization,
                 const std::filesystem::path& temporaryFolder, std::function<std::string()> name);

  [[nodiscard]] std::string microphoneName() const override { return name_(); }
  std::expected<Registration, std::string> listen(std::function<void(double level)> level) override;

 private:
  Task<void> begin();
  void tick();

  Executor& executor_;
  AudioCaptureService capture_;
  std::function<std::string()> name_;
  std::function<void(double)> level_;
  Registration timer_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  Scope tasks_;
};

}  // namespace murmel
