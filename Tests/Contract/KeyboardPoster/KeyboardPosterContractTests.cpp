#include "Foundation/Async/Scope.h"
#include "KeyboardDesk.h"
#include "Support/Testing.h"

namespace {

Task<void> wait(KeyboardPoster& poster, bool& ended) {
  auto waiting = poster.awaitReleasedModifiers();
  co_await waiting;
  ended = true;
}

}  // namespace

template <class Desk>
class KeyboardPosterContract : public ::testing::Test {
 protected:
  /// As a delivery does: never before the modifiers are up, as far as they can be waited for.
  PostResult post(PasteChord chord, const RunningApplication& target) {
    bool ended = false;
    Scope scope;
    scope.start(wait(poster, ended));
    EXPECT_TRUE(desk.waitUntil([&] { return ended; }));
    return poster.post(chord, target);
  }

  Desk desk;
  KeyboardPoster& poster = desk.poster();
};

using Desks = ::testing::Types<FakeKeyboardDesk, X11KeyboardDesk, WaylandKeyboardDesk>;
TYPED_TEST_SUITE(KeyboardPosterContract, Desks);

TYPED_TEST(KeyboardPosterContract, SendsTheChordToTheApplicationInFront) {
  const auto application = this->desk.launch("One");
  const auto handle = *this->desk.workspace().frontmostApplication();
  EXPECT_TRUE(this->poster.mayPost());
  std::size_t chords = 0;
  for (const auto chord : allCases<PasteChord>()) {
    EXPECT_TRUE(this->poster.canPost(chord));
    EXPECT_EQ(this->post(chord, handle), PostResult::posted);
    ++chords;
    EXPECT_TRUE(this->desk.waitUntil([&] { return this->desk.chordsSeenBy(application) == chords; }));
  }
}

TYPED_TEST(KeyboardPosterContract, SendsNothingToAnybodyElse) {
  const auto one = this->desk.launch("One");
  const auto handle = *this->desk.workspace().frontmostApplication();
  const auto two = this->desk.launch("Two");
  EXPECT_EQ(this->post(PasteChord::controlV, handle), PostResult::targetNotInFront);
  EXPECT_EQ(this->post(PasteChord::controlV, *this->desk.workspace().frontmostApplication()),
            PostResult::posted);
  EXPECT_TRUE(this->desk.waitUntil([&] { return this->desk.chordsSeenBy(two) == 1; }));
}

TYPED_TEST(KeyboardPosterContract, WaitsForAHeldModifierButNotForEver) {
  const auto application = this->desk.launch("One");
  bool ended = false;
  Scope scope;
  scope.start(wait(this->poster, ended));
  EXPECT_TRUE(this->desk.waitUntil([&] { return ended; })) << "nothing is held";

  this->desk.holdShift(application);
  ended = false;
  scope.start(wait(this->poster, ended));
  EXPECT_EQ(ended, !this->desk.waitsForModifiers);
  EXPECT_TRUE(this->desk.waitUntil([&] { return ended; }));
  const auto result = this->poster.post(PasteChord::controlV, *this->desk.workspace().frontmostApplication());
  EXPECT_EQ(result, this->desk.letsGoOfModifiers ? PostResult::posted : PostResult::unavailable);
  const std::size_t chords = this->desk.letsGoOfModifiers ? 1 : 0;
  EXPECT_TRUE(this->desk.waitUntil([&] { return this->desk.chordsSeenBy(application) == chords; }));
}
