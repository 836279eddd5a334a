#include "Segmentation/SpeechDraft.h"

#include <utility>

namespace murmel {

bool SpeechDraft::mayBegin(Speech speech, double pauseSeconds) const {
  return pauseSeconds >= (isSlow_ ? longPause : leastPause) && !isUnderWay_ && speech_ != speech;
}

void SpeechDraft::begin(Speech speech, CapturedAudio audio) {
  giveUp();
  speech_ = speech;
  isUnderWay_ = true;
  running_.start(recognise(std::move(audio)));
}

Task<void> SpeechDraft::recognise(CapturedAudio audio) {
  const auto begin = clock_.now();
  auto request = requests_.recogniseOnce(std::move(audio));
  words_ = co_await request;
  isSlow_ = clock_.now() - begin > longest;
  isUnderWay_ = false;
  if (auto finished = std::exchange(finished_, std::nullopt)) finished->send(true);
}

Task<std::optional<RecognitionOutcome>> SpeechDraft::take(Speech speech) {
  if (speech_ != speech) {
    giveUp();
    co_return std::nullopt;
  }
  if (isUnderWay_) {
    auto [sender, receiver] = makeOneShot<bool>();
    finished_ = std::move(sender);
    co_await receiver;
  }
  speech_.reset();
  auto words = std::exchange(words_, std::nullopt);
  if (words && words->kind != RecognitionOutcome::Kind::text) words.reset();
  co_return words;
}

void SpeechDraft::giveUp() {
  // Not a draft that is just telling of its end.
  if (std::exchange(isUnderWay_, false)) running_.cancelAll();
  speech_.reset();
  words_.reset();
}

}  // namespace murmel
