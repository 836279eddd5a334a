#pragma once

#include "Workers/SageWorker/ByteLevelBPE.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace murmel::worker {

/// Guesses how a corrector goes on: it writes the question again, with marks put in and first letters raised.
/// A guess costs nothing but time when it is wrong. The tokens must outlive the draft.
class AnswerDraft {
 public:
  /// `end` is the token that ends an answer.
  AnswerDraft(const ByteLevelBPE& tokens, std::string_view question, std::int64_t end);

  /// What may follow the tokens that are `written`, up to the end of the answer.
  [[nodiscard]] std::vector<std::int64_t> after(std::span<const std::int64_t> written) const;

  /// The rest of the question behind what has been `written` of it: found by the letters and digits, which a
  /// corrector keeps. A first letter is raised where a sentence begins.
  [[nodiscard]] std::string rest(std::string_view written) const;

 private:
  const ByteLevelBPE& tokens_;
  std::string question_;
  std::u32string letters_;         ///< the letters and digits of the question, without case
  std::vector<std::size_t> ends_;  ///< where each of them ends in the question
  std::int64_t end_;
};

}  // namespace murmel::worker
