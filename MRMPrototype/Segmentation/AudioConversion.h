#pragma once

#include "Audio/CapturedAudio.h"

#include <functional>

namespace murmel {

/// Brings samples of a device to the format of a recogniser. Any thread; the samples are finite.
using AudioConversion = std::function<CapturedAudio(PendingCapturedAudio)>;

}  // namespace murmel
