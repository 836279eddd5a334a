#include "Platform/Fake/ManualExecutor.h"
#include "Support/DictationRig.h"
#include "Support/FileBytes.h"
#include "Support/ProcessTraces.h"
#include "Support/RoomyLauncher.h"
#include "Support/SoundTape.h"

#include <cstddef>
#include <iostream>

#include <malloc.h>

namespace {

/// What this process holds of the system.
struct Holdings {
  std::size_t heapBytes;  ///< in use
  std::size_t residentBytes, descriptors, threads;

  static Holdings now() {
    std::ifstream statm("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    statm >> total >> resident;
    return {::mallinfo2().uordblks, resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)),
            openDescriptorCount(), threadCount()};
  }
};

}  // namespace

TEST(ManyDictations, FiveHundredInARowLeaveNothingBehind) {
  constexpr int warmUp = 100;
  constexpr int dictations = 500;
  TemporaryFolder model;
  model.write("script", bytesOf("ready\nserve\n"));
  ManualExecutor executor;
  RoomyLauncher launcher(model.path());
  WorkerRecognition recognition(executor, executor, launcher,
                                trustedWorker(MURMEL_SCRIPTED_WORKER, model.path()));
  const auto speech = SoundTape().noise(0.5).speech(2).noise(0.5).samples();
  {
    DictationRig rig(executor, executor, recognition, {speech.begin(), speech.end()});
    std::optional<Holdings> before;
    for (int dictation = 1; dictation <= warmUp + dictations; ++dictation) {
      rig.coordinator.toggle();
      // The delivery gives the target a moment before it presses the keys.
      ASSERT_TRUE(executor.waitUntil([&] {
        executor.advance(std::chrono::milliseconds(50));
        return rig.pastes == dictation;
      })) << dictation
          << ": " << rig.coordinator.state().title();
      ASSERT_TRUE(rig.pasted.starts_with("id=" + std::to_string(dictation) + " ")) << rig.pasted;
      // Past the outcome's display and the return of the clipboard.
      executor.advance(std::chrono::seconds(3));
      ASSERT_EQ(rig.coordinator.state().which(), DictationState::Case::ready);
      ASSERT_TRUE(rig.general.contents() == DictationRig::previousClipboard());
      if (dictation == warmUp) before = Holdings::now();
    }
    const auto after = Holdings::now();
    EXPECT_EQ(rig.pastes, warmUp + dictations);
    EXPECT_EQ(after.descriptors, before->descriptors);
    EXPECT_EQ(after.threads, before->threads);
#ifndef __SANITIZE_ADDRESS__
    // One dictation's samples are 100 KB; a hundred bytes kept of each would show. The fakes' notes of what
    // was asked of them are the rest.
    const auto grown = [](std::size_t now, std::size_t then) { return now > then ? now - then : 0; };
    const auto heap = grown(after.heapBytes, before->heapBytes);
    const auto resident = grown(after.residentBytes, before->residentBytes);
    std::cout << "grown by " << heap << " bytes of the heap, " << resident << " resident\n";
    EXPECT_LE(heap, 50'000U);
    EXPECT_LE(resident, 2'000'000U);
#endif
  }
  EXPECT_EQ(contentsOf(model.path() / "starts"), ".") << "one worker served them all";
  EXPECT_TRUE(executor.waitUntil([] { return !hasChildren(); }));
}
