#include "Segmentation/IncrementalDictationSession.h"

#include "Foundation/Text/Text.h"
#include "Segmentation/RetryAudio.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace murmel {

namespace {

/// What a recogniser takes in one request, in seconds.
constexpr double longestRequestSeconds = 50;

constexpr double firstProgressSeconds = 5;
/// The reports of a long recording come this much apart, those of its beginning closer.
constexpr double progressSeconds = 60;

CapturedAudio joined(CapturedAudio first, const CapturedAudio& second) {
  first.pcm16LE.insert(first.pcm16LE.end(), second.pcm16LE.begin(), second.pcm16LE.end());
  return first;
}

}  // namespace

IncrementalDictationSession::IncrementalDictationSession(DictationSessionConfiguration configuration,
                                                         IncrementalSessionServices services)
    : configuration_(std::move(configuration)),
      executor_(services.executor),
      log_(std::move(services.log)),
      convert_(std::move(services.convert)),
      cutter_(configuration_.targetSegmentSeconds),
      requests_(services.executor, services.clock,
                {configuration_.transcription, configuration_.nextTranscription},
                configuration_.languageCode),
      draft_(requests_, services.clock),
      // What has been inserted stands where it is.
      seams_(services.executor, configuration_.onPhrase ? nullptr : configuration_.refinement, pieces_),
      nextProgressSeconds_(firstProgressSeconds) {
  requests_.onRequest = [this] {
    if (!stopped_) ++diagnostics_.segmentsBeforeStop;
  };
  requests_.onSlow = [this](bool slow) {
    slowRequest_ = slow;
    updateBacklog();
  };
  if (configuration_.somebodyWaits) requests_.hurry();
  // Loading the model, where it is not, hides behind the speech.
  scope_.start(warm(configuration_.transcription));
}

Task<void> IncrementalDictationSession::warm(std::shared_ptr<TranscriptionProvider> recogniser) {
  auto preparation = recogniser->prepare();
  co_await preparation;  // a failure shows with the first segment
}

void IncrementalDictationSession::append(PendingCapturedAudio audio) {
  auto cuts = cutter_.append(std::move(audio), recogniserIsFree());
  reportLevels();
  reportProgress();
  for (auto& cut : cuts) enqueue(std::move(cut));
  if (configuration_.draftsInPauses && recogniserIsFree() && !carried_) draftOpenSegment();
}

void IncrementalDictationSession::draftOpenSegment() {
  auto open = cutter_.draft();
  if (!open || !open->speechEnd) return;
  const SpeechDraft::Speech speech{segments_, *open->speechEnd};
  if (draft_.mayBegin(speech, cutter_.quietSeconds())) draft_.begin(speech, convert_(std::move(open->audio)));
}

/// What comes from a file keeps it busy to the end.
bool IncrementalDictationSession::recogniserIsFree() const {
  return !recognising_ && !configuration_.somebodyWaits && std::isfinite(configuration_.targetSegmentSeconds);
}

void IncrementalDictationSession::enqueue(CutSegment cut) {
  log_.event(LogLevel::info, "segment_ready", {{"duration_seconds", cut.seconds}, {"after_stop", stopped_}});
  if (cut.floorDB && cut.speechDB) {
    log_.event(LogLevel::info, "pause_estimates", {{"floor_db", *cut.floorDB}, {"speech_db", *cut.speechDB}});
  }
  Segment segment;
  segment.place = segments_++;
  segment.span = {cutSeconds_, cutSeconds_ + cut.seconds};
  cutSeconds_ = segment.span.end;
  segment.evidence = cut.evidence;
  segment.speechEnd = cut.speechEnd;
  if (segment.evidence == SpeechEvidence::clear) heardSpeech_ = true;
  // Nobody has to listen to silence, or to keep it.
  if (segment.evidence == SpeechEvidence::none) return;
  segment.audio = convert_(std::move(cut.audio));
  queue_.push_back(std::move(segment));
  startRecognising();
  updateBacklog();
}

void IncrementalDictationSession::startRecognising() {
  if (recognising_ || (!stopped_ && std::isinf(configuration_.targetSegmentSeconds))) return;
  recognising_ = true;
  scope_.start(recogniseQueue());
}

Task<void> IncrementalDictationSession::recogniseQueue() {
  while (true) {
    while (!queue_.empty()) {
      Segment segment = std::move(queue_.front());
      queue_.pop_front();
      updateBacklog();
      recognisingSeconds_ = segment.seconds();
      auto recognition = recogniseSegment(std::move(segment));
      co_await recognition;
      recognisingSeconds_ = 0;
    }
    if (!stopped_) break;
    if (carried_) giveUpEmpty(*std::exchange(carried_, std::nullopt));
    auto lastChance = retryAside();
    co_await lastChance;
    break;
  }
  recognising_ = false;
  if (!finished_) co_return;
  // Posted, because whoever waits may destroy the session, and this task with it.
  executor_.post([finished = *std::exchange(finished_, std::nullopt)]() mutable { finished.send(true); });
}

Task<void> IncrementalDictationSession::recogniseSegment(Segment segment) {
  if (carried_) {
    auto together = recogniseWithCarried(segment);
    const bool salvaged = co_await together;
    if (salvaged) co_return;
  }
  auto taking = draft_.take({segment.place, segment.speechEnd.value_or(0)});
  std::optional<RecognitionOutcome> drafted = co_await taking;
  if (drafted) {
    if (!stopped_) ++diagnostics_.segmentsBeforeStop;
    auto delivery = deliver(segment.place, segment.span, *std::move(drafted));
    co_await delivery;
    co_return;
  }
  // A text can be completed later; a phrase cannot be inserted after the one that follows it.
  const bool othersMayGoFirst = !configuration_.onPhrase;
  auto recognition = requests_.recognise(segment.audio, othersMayGoFirst, segment.tries);
  RecognitionOutcome outcome = co_await recognition;
  switch (outcome.kind) {
    case RecognitionOutcome::Kind::text: {
      auto delivery = deliver(segment.place, segment.span, std::move(outcome));
      co_await delivery;
      break;
    }
    case RecognitionOutcome::Kind::empty: {
      auto retry = retryEmpty(std::move(segment));
      co_await retry;
      break;
    }
    case RecognitionOutcome::Kind::aside:
      if (!firstError_) firstError_ = outcome.error;
      segment.tries = outcome.tries;
      segment.tries.wasAside = true;
      aside_.push_back(std::move(segment));
      break;
    case RecognitionOutcome::Kind::failed:
      if (!firstError_) firstError_ = outcome.error;
      giveUpFailed(segment);
      break;
  }
}

Task<bool> IncrementalDictationSession::recogniseWithCarried(Segment segment) {
  const Segment first = *std::exchange(carried_, std::nullopt);
  if (first.seconds() + segment.seconds() <= longestRequestSeconds) {
    ++diagnostics_.carried;
    auto recognition = requests_.recognise(joined(first.audio, segment.audio));
    RecognitionOutcome outcome = co_await recognition;
    if (outcome.kind == RecognitionOutcome::Kind::text) {
      ++diagnostics_.successorSalvaged;
      const SpokenSpan both{first.span.begin, segment.span.end};
      auto delivery = deliver(segment.place, both, std::move(outcome));
      co_await delivery;
      co_return true;
    }
  }
  giveUpEmpty(first);
  co_return false;
}

Task<void> IncrementalDictationSession::retryEmpty(Segment segment) {
  ++diagnostics_.empty;
  const bool clear = segment.evidence == SpeechEvidence::clear;
  log_.event(LogLevel::info, "empty_recognition",
             {{"duration_seconds", segment.seconds()}, {"clear_speech", clear}});
  if (clear) {
    auto retry = requests_.recognise(retryAudio(segment.audio));
    RecognitionOutcome outcome = co_await retry;
    if (outcome.kind == RecognitionOutcome::Kind::text) {
      ++diagnostics_.recovered;
      auto delivery = deliver(segment.place, segment.span, std::move(outcome));
      co_await delivery;
      co_return;
    }
    if (successorMayCome()) {
      carried_ = std::move(segment);
      co_return;
    }
  }
  giveUpEmpty(segment);
}

Task<void> IncrementalDictationSession::retryAside() {
  auto segments = std::exchange(aside_, {});
  for (auto& segment : segments) {
    auto recognition = recogniseSegment(std::move(segment));
    co_await recognition;
  }
}

Task<void> IncrementalDictationSession::deliver(std::size_t place, SpokenSpan span,
                                                RecognitionOutcome outcome) {
  if (!stopped_) ++diagnostics_.completedBeforeStop;
  log_.event(LogLevel::info, "recognition_complete");
  providerID_ = outcome.providerID;
  SpokenText text = std::move(outcome.text);
  if (configuration_.refinement) {
    seams_.pause();
    auto refinement = configuration_.refinement->refine(text);
    const Result<SpokenText> refined = co_await refinement;
    // Without an answer of the refiner the words stay as they were recognised.
    if (refined) {
      const auto trimmed = text::trimmed(refined->reveal());
      if (!trimmed.empty()) text = SpokenText(std::string(trimmed));
    }
    if (!refined && !refinementFailure_) refinementFailure_ = refined.error();
    log_.event(LogLevel::info, "refinement_complete");
  }
  const RecognisedPiece piece{span, text};
  const auto after =
      std::ranges::upper_bound(pieces_, place, {}, &std::pair<std::size_t, RecognisedPiece>::first);
  pieces_.insert(after, {place, piece});
  if (configuration_.onRecognised) configuration_.onRecognised(piece);
  if (!stopped_) seams_.begin();
  if (!configuration_.onPhrase) co_return;
  auto delivery = configuration_.onPhrase(text);
  co_await delivery;
  log_.event(LogLevel::info, "segment_callback_complete");
}

/// Where nothing stands out of the noise, a recogniser that hears no words is right; where something does,
/// the user is told that a part is missing.
void IncrementalDictationSession::giveUpEmpty(const Segment& segment) {
  ++diagnostics_.unresolved;
  diagnostics_.abandonedSeconds += segment.seconds();
  if (segment.evidence == SpeechEvidence::clear) missing_.push_back(segment.span);
}

void IncrementalDictationSession::giveUpFailed(const Segment& segment) {
  diagnostics_.abandonedSeconds += segment.seconds();
  missing_.push_back(segment.span);
}

bool IncrementalDictationSession::successorMayCome() const {
  return !stopped_ || !queue_.empty();
}

Task<Result<DictationSessionResult>> IncrementalDictationSession::finish() {
  log_.event(LogLevel::info, "stop_received", {{"captured_seconds", cutter_.capturedSeconds()}});
  stopped_ = true;
  requests_.hurry();
  if (auto rest = cutter_.flush()) enqueue(*std::move(rest));
  startRecognising();
  if (recognising_) {
    auto [sender, receiver] = makeOneShot<bool>();
    finished_ = std::move(sender);
    co_await receiver;
  }
  auto seams = seams_.finish();
  co_await seams;
  co_return result();
}

Result<DictationSessionResult> IncrementalDictationSession::result() const {
  if (pieces_.empty()) {
    if (firstError_) return std::unexpected(*firstError_);
    return std::unexpected(!missing_.empty() ? MRMError::Case::unrecognizedSpeech : MRMError::Case::noSpeech);
  }
  DictationSessionResult result;
  std::string text;
  for (const auto& [place, piece] : pieces_) {
    if (!text.empty()) text += ' ';
    text += piece.text.reveal();
    result.pieces.push_back(piece);
  }
  result.text = SpokenText(std::move(text));
  result.failedPieces = static_cast<int>(missing_.size());
  result.missing = missing_;
  std::ranges::sort(result.missing, {}, &SpokenSpan::begin);
  result.providerID = providerID_;
  result.refinementFailure = refinementFailure_;
  return result;
}

double IncrementalDictationSession::waitingSeconds() const {
  return recognisingSeconds_ + queuedSeconds();
}

double IncrementalDictationSession::queuedSeconds() const {
  double waiting = 0;
  for (const auto& segment : queue_) waiting += segment.seconds();
  return waiting;
}

std::vector<RecognisedPiece> IncrementalDictationSession::recognisedSoFar() const {
  std::vector<RecognisedPiece> soFar;
  for (const auto& [place, piece] : pieces_) soFar.push_back(piece);
  return soFar;
}

bool IncrementalDictationSession::heardSpeech() const {
  return heardSpeech_ || cutter_.heardSpeech();
}

DictationDiagnostics IncrementalDictationSession::diagnostics() const {
  auto figures = diagnostics_;
  figures.duration = cutter_.capturedSeconds();
  figures.minimumWindowDB = cutter_.minimumWindowDB();
  figures.leadingLowLevelSeconds = cutter_.leadingLowLevelSeconds();
  figures.calibrationBatches = cutter_.calibrationBatches();
  figures.maximumBacklog = backlog_.maximum();
  figures.everBehind = backlog_.everBehind();
  figures.slowRequestObserved = backlog_.slowRequestObserved();
  return figures;
}

void IncrementalDictationSession::reportProgress() {
  const double captured = cutter_.capturedSeconds();
  if (captured < nextProgressSeconds_) return;
  nextProgressSeconds_ = captured + std::min(captured, progressSeconds);
  log_.event(LogLevel::info, "capture_progress",
             {{"captured_seconds", captured}, {"segments", segments_}, {"waiting", queue_.size()}});
}

void IncrementalDictationSession::reportLevels() {
  if (!calibrationReported_ && cutter_.calibrated()) {
    calibrationReported_ = true;
    log_.event(LogLevel::info, "pause_calibration",
               {{"batches", cutter_.calibrationBatches()}, {"floor_db", *cutter_.floorDB()}});
  }
  if (!lowLevelReported_ && cutter_.leadingLowLevelEnded()) {
    lowLevelReported_ = true;
    if (cutter_.leadingLowLevelSeconds() > 0) {
      log_.event(LogLevel::info, "pause_low_level",
                 {{"leading_seconds", cutter_.leadingLowLevelSeconds()},
                  {"minimum_window_db", cutter_.minimumWindowDB()}});
    }
  }
}

/// Counts what waits behind the segment that is being recognised: that one is late only when it is slow.
void IncrementalDictationSession::updateBacklog() {
  if (std::isinf(configuration_.targetSegmentSeconds)) return;
  if (backlog_.update(queuedSeconds(), slowRequest_) && configuration_.onBacklog)
    configuration_.onBacklog(backlog_.behind(), backlog_.revision());
}

std::unique_ptr<DictationSession> IncrementalDictationSessionFactory::make(
    DictationSessionConfiguration configuration) {
  return std::make_unique<IncrementalDictationSession>(std::move(configuration), services_);
}

}  // namespace murmel
