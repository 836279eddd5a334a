#pragma once

#include "Platform/SoundPlayer.h"

#include <vector>

namespace murmel {

/// The wave of a cue: mono samples at `sampleRate` (Hz), a fifth of a second at most, from silence to
/// silence, never louder than a quarter of full scale. The start of a recording rings, its end falls.
std::vector<float> systemSoundWave(SystemSound sound, unsigned sampleRate);

}  // namespace murmel
