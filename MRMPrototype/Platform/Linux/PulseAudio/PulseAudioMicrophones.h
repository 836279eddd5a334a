#pragma once

#include "Foundation/Async/SerialQueue.h"
#include "Platform/Linux/PulseAudio/PulseServer.h"
#include "Platform/Microphones.h"

#include <memory>

namespace murmel {

/// Asks the sound server each time, over a connection that lives as long as the question: nothing runs while
/// nobody looks.
class PulseAudioMicrophones final : public Microphones {
 public:
  /// The executor outlives this.
  PulseAudioMicrophones(Executor& executor, PulseServer server);

  void list(std::function<void(std::vector<MicrophoneSource>)> answer) override;
  void choose(const std::string& name, std::function<void(bool done)> answer) override;

 private:
  Executor& executor_;
  PulseServer server_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  SerialQueue queue_;
};

}  // namespace murmel
