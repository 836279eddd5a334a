#include "Product/MRMError.h"

namespace murmel {

std::string MRMError::localizedDescription() const {
  switch (case_) {
    case Case::modelMissing:
      return "Local model is missing: " + detail_;
    case Case::workerFailed:
      return "Local transcription failed: " + detail_;
    case Case::microphoneDenied:
      return "Microphone permission is required";
    case Case::workerMissing:
      return "Local ASR worker is missing from the app";
    case Case::recordingFailed:
      return "Could not start microphone recording";
    case Case::noSpeech:
      return "No speech was detected";
    case Case::unrecognizedSpeech:
      return "The recording could not be recognized. Please try again.";
    case Case::smartModelMissing:
      return "Smart Local model or runtime is not installed";
    case Case::smartRefinementFailed:
      return "Smart Local formatting failed; using the raw transcript";
  }
  std::unreachable();
}

}  // namespace murmel
