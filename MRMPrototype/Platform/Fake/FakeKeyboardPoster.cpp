#include "Platform/Fake/FakeKeyboardPoster.h"

#include "Foundation/Async/Timers.h"

#include <algorithm>

namespace murmel {

Task<void> FakeKeyboardPoster::awaitReleasedModifiers() {
  if (held_ <= Duration{}) co_return;
  auto waiting = sleepFor(executor_, std::min(held_, longestWait));
  co_await waiting;
  held_ = {};
}

void FakeKeyboardPoster::maskHeldModifiers() {
  if (held_ > Duration{}) ++masked_;
}

PostResult FakeKeyboardPoster::post(PasteChord chord, const RunningApplication& target) {
  if (beforePost_) beforePost_();
  if (!mayPost_ || !canPost(chord)) return PostResult::unavailable;
  const auto front = workspace_.frontmostApplication();
  if (!front || !isSameWindow(*front, target)) return PostResult::targetNotInFront;
  held_ = {};
  posted_.push_back(chord);
  if (onPosted_) onPosted_(chord);
  return PostResult::posted;
}

}  // namespace murmel
