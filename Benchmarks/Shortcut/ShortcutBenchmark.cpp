// Run inside a private X session: Tests/Support/private-session --wm
// build/bench/benchmarks/benchmark_shortcut
#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Signal.h"
#include "Platform/Fake/FakeKeyEventTap.h"
#include "Platform/KeyModifiers.h"
#include "Platform/Linux/X11Keys/X11KeyConnection.h"
#include "Platform/Linux/X11Keys/X11KeyEventTap.h"
#include "Platform/Qt/QtExecutor.h"
#include "Shortcut/HotkeyService.h"
#include "Shortcut/ShortcutChoice.h"
#include "Support/XTestKeyboard.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <algorithm>
#include <chrono>
#include <vector>

#include <benchmark/benchmark.h>

using namespace murmel;
using SteadyClock = std::chrono::steady_clock;

namespace {

void reportPercentiles(benchmark::State& state, std::vector<double> seconds) {
  if (seconds.empty()) return;
  std::ranges::sort(seconds);
  const auto microseconds = [&](double share) {
    constexpr double microsecondsPerSecond = 1e6;
    return seconds[static_cast<std::size_t>(share * static_cast<double>(seconds.size() - 1))] *
           microsecondsPerSecond;
  };
  state.counters["median_us"] = microseconds(0.5);
  state.counters["p99_us"] = microseconds(0.99);
  state.counters["max_us"] = microseconds(1);
}

/// From the injection of a key to the call that the coordinator gets, through the application's event loop.
void fromKeyToCall(benchmark::State& state) {
  QtExecutor executor;
  const SystemClock clock;
  InjectedKeyList injectedKeys(clock);
  X11KeyEventTap taps(executor, injectedKeys, X11KeyEnvironment::fromProcess());
  KeyTapShortcutSource source(taps);
  FakeLocalKeyMonitor localKeys;
  Signal<> none;
  HotkeyService service(executor, clock, source, localKeys, {none, none, none});
  int calls = 0;
  service.onPress = [&] { ++calls; };
  service.onRelease = [&] { ++calls; };
  service.start([shortcut = configuration(ShortcutChoice::optionKey)] { return shortcut; });

  test::XTestKeyboard keyboard;
  std::vector<double> seconds;
  bool goesDown = true;
  for ([[maybe_unused]] const auto iteration : state) {
    const auto begin = SteadyClock::now();
    const auto before = calls;
    keyboard.send(KEY_LEFTALT, goesDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE);
    xcb_flush(keyboard.connection());
    while (calls == before) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    seconds.push_back(std::chrono::duration<double>(SteadyClock::now() - begin).count());
    state.SetIterationTime(seconds.back());
    goesDown = !goesDown;
  }
  keyboard.release(KEY_LEFTALT);
  reportPercentiles(state, std::move(seconds));
}
BENCHMARK(fromKeyToCall)->UseManualTime()->Iterations(5'000)->Unit(benchmark::kMicrosecond);

/// What a change of layout, or of the keyboard in use, costs the main thread.
void readingTheLayout(benchmark::State& state) {
  const auto connection = X11KeyConnection::open("");
  if (!connection) return state.SkipWithError(connection.error().c_str());
  for ([[maybe_unused]] const auto iteration : state) benchmark::DoNotOptimize((*connection)->readLayout());
}
BENCHMARK(readingTheLayout)->Unit(benchmark::kMicrosecond);

void stateMachine(benchmark::State& state) {
  const auto shortcut = configuration(ShortcutChoice::commandShiftD);
  HotkeyStateMachine machine;
  const MRMHotkeyEvent typing{KeyEventType::keyDown, 0, 0, false, 1};
  for ([[maybe_unused]] const auto iteration : state) {
    benchmark::DoNotOptimize(machine.consume(typing, shortcut));
  }
}
BENCHMARK(stateMachine);

}  // namespace

int main(int argumentCount, char** arguments) {
  QCoreApplication application(argumentCount, arguments);
  benchmark::Initialize(&argumentCount, arguments);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
