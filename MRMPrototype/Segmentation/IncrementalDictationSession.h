#pragma once

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Log.h"
#include "Segmentation/DictationBacklog.h"
#include "Segmentation/DictationSession.h"
#include "Segmentation/RecognitionRequests.h"
#include "Segmentation/SeamReview.h"
#include "Segmentation/SegmentCutter.h"
#include "Segmentation/SpeechDraft.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace murmel {

/// What every session needs of the application. The executor and the clock must outlive the sessions.
struct IncrementalSessionServices {
  Executor& executor;
  const Clock& clock;
  Logger log;               ///< of the category "incremental-stages"
  AudioConversion convert;  ///< `convertForRecognition`
};

/// Recognises a dictation while it is recorded, segment after segment, so that little is left to do at the
/// stop: as soon as the recogniser is free it gets the phrases that are finished, also before the target. In
/// a pause it recognises what is still open, as a draft: should nothing follow, there is nothing to wait for.
/// With an infinite target it recognises nothing before the stop.
///
/// A segment is kept until its words are there, whatever happens to the recogniser meanwhile; a segment with
/// clear speech of which the recogniser made nothing is tried louder, then together with the segment
/// that follows. Only then is it given up, and counted. Silence is not sent to the recogniser at all. Beside
/// the open segment, only audio that is not yet recognised is in memory.
class IncrementalDictationSession final : public DictationSession {
 public:
  IncrementalDictationSession(DictationSessionConfiguration configuration,
                              IncrementalSessionServices services);

  void append(PendingCapturedAudio audio) override;
  Task<Result<DictationSessionResult>> finish() override;
  [[nodiscard]] double waitingSeconds() const override;
  [[nodiscard]] std::vector<RecognisedPiece> recognisedSoFar() const override;
  [[nodiscard]] double quietSeconds() const override { return cutter_.quietSeconds(); }
  [[nodiscard]] bool heardSpeech() const override;
  [[nodiscard]] DictationDiagnostics diagnostics() const override;

 private:
  struct Segment {
    std::size_t place = 0;  ///< its number in the recording
    CapturedAudio audio;
    SpokenSpan span;
    RetryPolicy::Tries tries;
    SpeechEvidence evidence = SpeechEvidence::none;
    std::optional<std::int64_t> speechEnd;  ///< see CutSegment
    [[nodiscard]] double seconds() const { return span.end - span.begin; }
  };

  [[nodiscard]] bool recogniserIsFree() const;
  void enqueue(CutSegment cut);
  void draftOpenSegment();
  void startRecognising();
  static Task<void> warm(std::shared_ptr<TranscriptionProvider> recogniser);
  Task<void> recogniseQueue();
  Task<void> recogniseSegment(Segment segment);
  /// Whether the words of the carried segment and this one came out together.
  Task<bool> recogniseWithCarried(Segment segment);
  Task<void> retryEmpty(Segment segment);
  Task<void> retryAside();
  Task<void> deliver(std::size_t place, SpokenSpan span, RecognitionOutcome outcome);
  void giveUpEmpty(const Segment& segment);
  void giveUpFailed(const Segment& segment);
  [[nodiscard]] bool successorMayCome() const;
  [[nodiscard]] double queuedSeconds() const;

  void reportProgress();
  void reportLevels();
  void updateBacklog();
  [[nodiscard]] Result<DictationSessionResult> result() const;

  DictationSessionConfiguration configuration_;
  Executor& executor_;
  Logger log_;
  AudioConversion convert_;

  SegmentCutter cutter_;
  std::size_t segments_ = 0;
  double cutSeconds_ = 0;  ///< the end of the last segment
  bool heardSpeech_ = false;
  std::deque<Segment> queue_;
  std::optional<MRMError> refinementFailure_;
  std::optional<Segment> carried_;  ///< empty, waiting for the one that follows
  std::vector<Segment> aside_;      ///< waiting for the stop

  RecognitionRequests requests_;
  SpeechDraft draft_;
  bool recognising_ = false;
  bool stopped_ = false;
  bool slowRequest_ = false;
  std::optional<OneShotSender<bool>> finished_;

  SeamReview::Pieces pieces_;
  SeamReview seams_;
  std::string providerID_;
  std::vector<SpokenSpan> missing_;
  double recognisingSeconds_ = 0;  ///< of the segment that the recogniser has
  std::optional<MRMError> firstError_;

  DictationDiagnostics diagnostics_;
  DictationBacklog backlog_;
  double nextProgressSeconds_;
  bool calibrationReported_ = false;
  bool lowLevelReported_ = false;

  /// The running recognition. Last, so that it ends before anything that it uses.
  Scope scope_;
};

class IncrementalDictationSessionFactory final : public DictationSessionFactory {
 public:
  explicit IncrementalDictationSessionFactory(IncrementalSessionServices services)
      : services_(std::move(services)) {}
  std::unique_ptr<DictationSession> make(DictationSessionConfiguration configuration) override;

 private:
  IncrementalSessionServices services_;
};

}  // namespace murmel
