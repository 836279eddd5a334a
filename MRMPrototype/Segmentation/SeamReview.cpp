#include "Segmentation/SeamReview.h"

#include "Refinement/SeamFormatting.h"

#include <algorithm>

namespace murmel {

void SeamReview::begin() {
  if (refiner_ && running_.size() == 0) running_.start(review(/*onlyNeighbours=*/true));
}

Task<void> SeamReview::finish() {
  pause();
  if (!refiner_) co_return;
  auto [sender, receiver] = makeOneShot<bool>();
  const auto done = std::make_shared<OneShotSender<bool>>(std::move(sender));
  const auto timer = executor_.after(limit, [done] { done->send(false); });
  running_.start(reviewAll(done));
  co_await receiver;
  pause();
}

Task<void> SeamReview::reviewAll(std::shared_ptr<OneShotSender<bool>> done) {
  auto rest = review(/*onlyNeighbours=*/false);
  co_await rest;
  // Later, because the waiter ends this task.
  executor_.post([done] { done->send(true); });
}

Task<void> SeamReview::review(bool onlyNeighbours) {
  // A piece may come between two others until the end: places are looked up again after every wait.
  for (std::size_t index = 0; index + 1 < pieces_.size(); ++index) {
    const std::pair seam(pieces_[index].first, pieces_[index + 1].first);
    if (seen_.contains(seam) || (onlyNeighbours && seam.second != seam.first + 1)) continue;
    const auto left = pieces_[index].second.text.reveal();
    const auto right = pieces_[index + 1].second.text.reveal();
    if (const auto question = SeamFormatting::question(left, right)) {
      auto asking = refiner_->refine(SpokenText(*question));
      const Result<SpokenText> answer = co_await asking;
      const auto sides = answer ? SeamFormatting::applied(left, right, answer->reveal()) : std::nullopt;
      const auto place = std::ranges::find(pieces_, seam.first, &Pieces::value_type::first);
      index = static_cast<std::size_t>(place - pieces_.begin());
      if (sides) {
        place->second.text = SpokenText(sides->left);
        (place + 1)->second.text = SpokenText(sides->right);
      }
    }
    seen_.insert(seam);
  }
}

}  // namespace murmel
