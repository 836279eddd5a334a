#pragma once

#include <expected>
#include <string>
#include <utility>

namespace murmel {

/// Everything that can go wrong with a dictation, with the sentence that the user reads.
class MRMError {
 public:
  enum class Case {
    modelMissing,
    workerFailed,
    microphoneDenied,
    workerMissing,
    recordingFailed,
    noSpeech,
    unrecognizedSpeech,
    smartModelMissing,
    smartRefinementFailed,
  };

  MRMError(Case which) : case_(which) {}  // a case without detail is an error.
  static MRMError modelMissing(std::string detail) { return {Case::modelMissing, std::move(detail)}; }
  static MRMError workerFailed(std::string detail) { return {Case::workerFailed, std::move(detail)}; }

  [[nodiscard]] Case which() const { return case_; }
  /// What the message of `modelMissing` and `workerFailed` ends with; empty for the others.
  [[nodiscard]] const std::string& detail() const { return detail_; }
  [[nodiscard]] std::string localizedDescription() const;

  friend bool operator==(const MRMError&, const MRMError&) = default;

 private:
  MRMError(Case which, std::string detail) : case_(which), detail_(std::move(detail)) {}

  Case case_;
  std::string detail_;
};

/// A value, or why there is none.
template <class T>
using Result = std::expected<T, MRMError>;

/// What there is instead of a result when a worker has failed.
inline std::unexpected<MRMError> workerFailed(std::string detail) {
  return std::unexpected(MRMError::workerFailed(std::move(detail)));
}

}  // namespace murmel
