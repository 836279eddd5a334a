#include "Platform/Fake/FakeMicrophoneAuthorization.h"

#include <utility>

namespace murmel {

Task<bool> FakeMicrophoneAuthorization::requestAccess() {
  ++requestCount_;
  auto [sender, receiver] = makeOneShot<bool>();
  question_.emplace(std::move(sender));
  const auto granted = co_await receiver;
  co_return granted.value_or(false);
}

bool FakeMicrophoneAuthorization::answer(bool granted) {
  auto question = std::exchange(question_, std::nullopt);
  if (!question) return false;
  question->send(granted);
  return true;
}

}  // namespace murmel
