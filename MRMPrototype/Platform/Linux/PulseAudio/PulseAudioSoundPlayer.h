#pragma once

#include "Platform/Linux/PulseAudio/PulseServer.h"
#include "Platform/SoundPlayer.h"

#include <memory>

namespace murmel {

/// Plays the cues through the sound server's default sink. The connection is made with the first cue and
/// kept, so that the next one is heard at once; a cue that could only be heard late, or by nobody, is
/// dropped.
class PulseAudioSoundPlayer final : public SoundPlayer {
 public:
  explicit PulseAudioSoundPlayer(PulseServer server);
  ~PulseAudioSoundPlayer() override;

  void play(SystemSound sound) override;

 private:
  class Connection;

  PulseServer server_;
  std::unique_ptr<Connection> connection_;
};

}  // namespace murmel
