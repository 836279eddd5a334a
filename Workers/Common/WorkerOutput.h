#pragma once

#include "Foundation/UniqueDescriptor.h"

namespace murmel::worker {

/// Keeps standard output for the protocol alone: whatever a library prints from now on goes nowhere. Empty
/// when the system refuses.
UniqueDescriptor takeStandardOutput();

}  // namespace murmel::worker
