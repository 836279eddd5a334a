#include "Platform/Linux/X11Keys/InjectedKeyList.h"

#include <algorithm>

namespace murmel {

namespace {

/// The server answers an injection within milliseconds. It drops some (a key that is up cannot be released);
/// those must not cost the user a key later.
constexpr Duration expectationLifetime = std::chrono::seconds(2);

}  // namespace

void InjectedKeyList::expect(std::uint32_t keyCode, bool goesDown) {
  forgetOld();
  expected_.push_back({keyCode, goesDown, clock_.now()});
}

bool InjectedKeyList::take(std::uint32_t keyCode, bool goesDown) {
  forgetOld();
  const auto found = std::ranges::find_if(expected_, [&](const Expected& expected) {
    return expected.keyCode == keyCode && expected.goesDown == goesDown;
  });
  if (found == expected_.end()) return false;
  expected_.erase(found);
  return true;
}

void InjectedKeyList::forgetOld() {
  const auto oldest = clock_.now() - expectationLifetime;
  while (!expected_.empty() && expected_.front().announced < oldest) expected_.pop_front();
}

}  // namespace murmel
