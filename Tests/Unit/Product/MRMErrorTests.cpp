#include "Product/MRMError.h"
#include "Support/Testing.h"

TEST(MRMError, SaysWhatTheUserReads) {
  using enum MRMError::Case;
  struct Row {
    MRMError error;
    std::string_view description;
  };
  const std::vector<Row> rows{
      {MRMError::modelMissing("Parakeet"), "Local model is missing: Parakeet"},
      {MRMError::workerFailed("exit 9"), "Local transcription failed: exit 9"},
      {microphoneDenied, "Microphone permission is required"},
      {workerMissing, "Local ASR worker is missing from the app"},
      {recordingFailed, "Could not start microphone recording"},
      {noSpeech, "No speech was detected"},
      {unrecognizedSpeech, "The recording could not be recognized. Please try again."},
      {smartModelMissing, "Smart Local model or runtime is not installed"},
      {smartRefinementFailed, "Smart Local formatting failed; using the raw transcript"},
  };
  for (const auto& left : rows) {
    EXPECT_EQ(left.error.localizedDescription(), left.description);
    for (const auto& right : rows) EXPECT_EQ(left.error == right.error, &left == &right);
  }
  EXPECT_NE(MRMError::workerFailed("a"), MRMError::workerFailed("b"));
}
