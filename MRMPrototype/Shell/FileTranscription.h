#pragma once

#include "Audio/AudioFileReader.h"
#include "Dictation/TranscriptCleanUp.h"
#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Task.h"
#include "Recognition/TranscriptionProviderFactory.h"
#include "Refinement/RefinementSource.h"
#include "Segmentation/DictationSession.h"
#include "Settings/DictationSettings.h"
#include "Shell/TranscriptForms.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// What turns samples into text outside the desktop application; all of it outlives the transcriptions.
struct TranscriptionServices {
  Executor& executor;
  const Clock& clock;
  const DictationSettings& settings;
  TranscriptionProviderFactory& recognition;
  RefinementSource& refinement;
  TranscriptCleanUp& cleanUp;
  DictationSessionFactory& sessions;
  std::shared_ptr<TranscriptionProvider> recogniser = nullptr;

  /// How a recording is cut, recognised and refined as the settings say; without a way to deliver it.
  [[nodiscard]] DictationSessionConfiguration configuration(double targetSegmentSeconds) const;
  [[nodiscard]] SpokenText cleaned(const SpokenText& text) const;
  /// The session's words after the clean-up that the settings ask for, piece by piece and as a whole.
  [[nodiscard]] Transcript transcript(std::string name, std::vector<RecognisedPiece> pieces) const;
};

/// One audio file on the road of speech: segments, recogniser, refinement, clean-up. It reads no faster than
/// the words come, so that the length of a file does not show in the memory. Main thread; whoever destroys it
/// gives it up.
class FileTranscription {
 public:
  struct Options {
    double targetSegmentSeconds = 15;
    bool realTime = false;  ///< as fast as it was spoken
    /// Called with each phrase, cleaned, in the order of the speech.
    std::function<void(const RecognisedPiece&)> onPhrase;
    /// Seconds that are done.
    std::function<void(double done)> onProgress;
  };
  struct Outcome {
    Transcript transcript;
    std::optional<std::string> problem;  ///< a sentence that names the file
  };

  FileTranscription(const TranscriptionServices& services, std::string name, AudioFileReader reader,
                    Options options);

  Task<Outcome> run();
  /// The words so far.
  [[nodiscard]] Transcript soFar() const;
  /// Seconds, as far as the file tells.
  [[nodiscard]] double expectedSeconds() const;

 private:
  Task<void> readAll();
  Task<void> showPhrase(SpokenText text);
  void reportProgress();

  const TranscriptionServices& services_;
  std::string name_;
  AudioFileReader reader_;
  Options options_;
  std::unique_ptr<DictationSession> session_;
  SpokenSpan phrase_;
  double readSeconds_ = 0;
  std::optional<std::string> problem_;
};

}  // namespace murmel
