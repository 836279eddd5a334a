#pragma once

namespace murmel {

/// Whether one of the programs runs that lock the screen of a Wayland session without telling anybody on the
/// buses. Looks through /proc, which takes about a millisecond.
bool screenLockerRuns();

}  // namespace murmel
