#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Segmentation/DictationSession.h"

#include <chrono>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace murmel {

/// Has the seams between the formatted pieces of one dictation looked at once more: while the recording goes
/// on, where the refiner has nothing else to do, and the rest at the end. What fails, or comes too late,
/// leaves the pieces as they are. Main thread.
class SeamReview {
 public:
  /// Pieces with their numbers in the recording, in order.
  using Pieces = std::vector<std::pair<std::size_t, RecognisedPiece>>;

  /// At the end, for all seams together.
  static constexpr Duration limit = std::chrono::seconds(3);

  /// Without a refiner it does nothing. `executor` and `pieces` must outlive it.
  SeamReview(Executor& executor, std::shared_ptr<RefinementProvider> refiner, Pieces& pieces)
      : executor_(executor), refiner_(std::move(refiner)), pieces_(pieces) {}

  /// Begins with the seams between neighbours of which both sides are there.
  void begin();
  /// Makes room for a piece that is to be formatted.
  void pause() { running_.cancelAll(); }
  /// The rest, when no piece is to come.
  Task<void> finish();

 private:
  Task<void> review(bool onlyNeighbours);
  Task<void> reviewAll(std::shared_ptr<OneShotSender<bool>> done);

  Executor& executor_;
  std::shared_ptr<RefinementProvider> refiner_;
  Pieces& pieces_;
  std::set<std::pair<std::size_t, std::size_t>> seen_;  ///< numbers of the pieces at each seam
  Scope running_;
};

}  // namespace murmel
