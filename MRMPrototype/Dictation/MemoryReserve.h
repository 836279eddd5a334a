#pragma once

#include "Foundation/Registration.h"

namespace murmel {

/// Address space put aside until the registration goes, for what recognising and delivering need where the
/// rest is used up; no page of it is ever touched. Empty where there is not so much.
Registration reserveMemory();

/// Whether the largest piece that a recording may ask for at once would be refused. A question of
/// microseconds, to be asked before somebody's words are in a half-moved buffer.
bool memoryIsShort();

}  // namespace murmel
