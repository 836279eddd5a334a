#pragma once

#include "Audio/CapturedAudio.h"

namespace murmel {

/// The same audio in a form that a recogniser which heard nothing in it may understand: quiet speech made
/// louder, and some silence around what may be too short.
CapturedAudio retryAudio(CapturedAudio audio);

}  // namespace murmel
