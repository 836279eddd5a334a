#pragma once

#include "Foundation/Environment.h"
#include "Platform/DesktopProbe.h"

namespace murmel {

/// Asks the display servers and the session bus of this environment. Connects for a moment and changes
/// nothing; takes a few milliseconds, and up to three seconds where one of them hangs. Needs neither Qt nor a
/// loop.
SessionFacts probeSession(const Environment& environment);

/// Has this process do without a bus that hangs, as where there is none: every library that speaks to it
/// would wait for half a minute at each question. Changes the environment, so before any thread and before
/// Qt.
void avoidHangingBuses();

/// Whether one of the programs runs that lock the screen of a Wayland session without telling anybody on the
/// buses. Looks through /proc, which takes about a millisecond.
bool screenLockerRuns();

/// The parts of the probe.
SessionFacts::X11 probeX11(const Environment& environment);
SessionFacts::Wayland probeWayland(const Environment& environment);
/// Fills in the names and portals.
void probeSessionBus(SessionFacts& facts);

}  // namespace murmel
