#pragma once

namespace murmel {

enum class SystemSound {
  tink,  ///< the recording has begun
  pop,   ///< the recording has ended
};

/// Plays short cues. Never blocks and never fails loudly: a cue that cannot be played is dropped. Main
/// thread.
class SoundPlayer {
 public:
  virtual ~SoundPlayer() = default;
  virtual void play(SystemSound sound) = 0;
};

}  // namespace murmel
