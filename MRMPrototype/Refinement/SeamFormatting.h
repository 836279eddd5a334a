#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Pieces of a dictation are formatted one by one, each as if it ended a sentence: full stops stand where the
/// speaker has paused. A seam between two pieces is looked at once more, with both sides in view. Nothing but
/// the mark at the end of the left side and the case of the first letter of the right one can change.
/// Stateless and pure.
struct SeamFormatting {
  /// What a refiner is asked at once: half of it from each side.
  static constexpr std::size_t mostWords = 40;

  struct Sides {
    std::string left;
    std::string right;
    friend bool operator==(const Sides&, const Sides&) = default;
  };

  /// The words round the seam, without what says that a sentence ends there. Nothing when there is nothing to
  /// look at: the left side ends with a question or a call, with a number or an abbreviation, or in the
  /// middle of a sentence that the right side goes on with.
  static std::optional<std::string> question(std::string_view left, std::string_view right);

  /// Both sides, with the seam as a refiner's answer to the question has it. Nothing when they stay as they
  /// are: the answer ends a sentence there, too, or says nothing that the question did not.
  static std::optional<Sides> applied(std::string_view left, std::string_view right, std::string_view answer);
};

}  // namespace murmel
