#pragma once

namespace murmel {

/// What the user does with the real key ring of the private session.
namespace keyringControl {

/// Whether this process runs in a private session with a key ring.
bool isPresent();
void lock();
/// With the password that the private session gave it, without asking anybody.
void unlock();
/// Stops the service from answering, and lets it go on.
void freeze();
void thaw();
/// The daemon dies and another one takes its place, unlocked.
void restart();

}  // namespace keyringControl

}  // namespace murmel
