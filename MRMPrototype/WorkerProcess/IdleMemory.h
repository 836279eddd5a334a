#pragma once

namespace murmel {

/// Gives the system back what this process holds but does not need at rest: free memory, and the code that
/// has run (it stays in the system's cache, and is mapped again when it runs). Any thread.
void giveBackIdleMemory();

}  // namespace murmel
