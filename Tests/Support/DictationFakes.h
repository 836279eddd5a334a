#pragma once

#include "Delivery/TextInsertion.h"
#include "Dictation/OverlayController.h"
#include "Dictation/TranscriptCleanUp.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Signal.h"
#include "Foundation/Log.h"
#include "History/DictationHistory.h"
#include "MRMUpdatePolicy/UpdateAdmissionGate.h"
#include "Models/ModelDownloadPriorityCoordinator.h"
#include "Models/SpeechModelStore.h"
#include "Recognition/TranscriptionProviderFactory.h"
#include "Refinement/RefinementSource.h"
#include "Segmentation/DictationSession.h"
#include "Settings/DictationSettings.h"
#include "Support/MemoryLogSink.h"
#include "Support/Testing.h"

#include <deque>

/// Strict fakes of the coordinator's neighbours: they answer as the test says, and fail the test when they
/// are used in an order that their contract forbids.
namespace murmel::test {

/// A place where the code under test waits until the test lets it go on, or runs through when the test has
/// given the answer ahead.
template <class T>
class Suspension {
 public:
  /// Every wait is answered with `value` at once.
  void answerWith(T value) { standing_ = std::move(value); }
  /// Waits are kept until `resume`.
  void holdBack() { standing_.reset(); }

  [[nodiscard]] bool isWaiting() const { return !waiting_.empty(); }
  void resume(T value) {
    auto sender = std::move(waiting_.front());
    waiting_.pop_front();
    sender.send(std::move(value));
  }

  Task<T> wait() {
    if (standing_) co_return *standing_;
    auto [sender, receiver] = makeOneShot<T>();
    waiting_.push_back(std::move(sender));
    auto value = co_await receiver;
    co_return *std::move(value);
  }

 private:
  std::optional<T> standing_;
  std::deque<OneShotSender<T>> waiting_;
};

class FakeTextInsertion final : public TextInsertion {
 public:
  ~FakeTextInsertion() override { EXPECT_FALSE(sessionOpen) << "an insertion session was not ended"; }

  void beginDictationSession() override {
    sessionOpen = true;
    ++sessionsBegun;
  }
  void endDictationSession() override {
    EXPECT_TRUE(sessionOpen) << "no insertion session to end";
    sessionOpen = false;
  }
  Task<std::optional<TextDeliveryResult>> finishPasteCleanup() override { return cleanup.wait(); }
  Task<TextDeliveryResult> insertOrCopy(SpokenText text, bool /*liveOnly*/) override {
    EXPECT_TRUE(sessionOpen) << "text is delivered inside a session";
    delivered.push_back(text.reveal());
    return insertion.wait();
  }
  Task<bool> insertLiveSegment(SpokenText phrase) override {
    EXPECT_TRUE(sessionOpen) << "phrases are inserted inside a session";
    phrases.push_back(phrase.reveal());
    return phraseInsertion.wait();
  }
  [[nodiscard]] std::optional<LiveInsertionBlock> lastBlock() const override { return block; }
  [[nodiscard]] std::optional<TextDeliveryResult> lastResult() const override { return result; }
  Task<bool> writePrivateText(SpokenText text) override {
    copied.push_back(text.reveal());
    auto writing = copying.wait();
    copySucceeds = co_await writing;
    co_return copySucceeds;
  }
  [[nodiscard]] Registration onPasteSettled(std::function<void(PasteSettlement)> handler) override {
    return settled.subscribe(std::move(handler));
  }

  void recordingEnded() override { ++recordingsEnded; }
  [[nodiscard]] bool clipboardWasKept() const override { return clipboardKept; }
  [[nodiscard]] bool lastCopySucceeded() const override { return copySucceeds; }

  Signal<PasteSettlement> settled;
  int recordingsEnded = 0;
  bool clipboardKept = true;
  bool copySucceeds = true;
  bool sessionOpen = false;
  int sessionsBegun = 0;
  std::vector<std::string> delivered, phrases, copied;
  std::optional<LiveInsertionBlock> block;
  std::optional<TextDeliveryResult> result;
  Suspension<std::optional<TextDeliveryResult>> cleanup;
  Suspension<TextDeliveryResult> insertion;
  Suspension<bool> phraseInsertion, copying;
};

class FakeDictationSettings final : public DictationSettings {
 public:
  [[nodiscard]] bool playFeedbackSound() const override { return sounds; }
  [[nodiscard]] double forgottenRecordingMinutes() const override { return forgottenMinutes; }
  [[nodiscard]] bool cancelsWithEscape() const override { return escape; }
  [[nodiscard]] bool keepFailedRecordings() const override { return keepFailed; }
  [[nodiscard]] bool processWhileRecording() const override { return process; }
  [[nodiscard]] bool insertWhileRecording() const override { return live; }
  [[nodiscard]] bool removeFillerWords() const override { return fillers; }
  [[nodiscard]] bool smartFormatting() const override { return formatting; }
  [[nodiscard]] SmartRefinementRoutingMode smartRefinementRouting() const override { return routing; }
  [[nodiscard]] SmartLocalModel smartLocalModel() const override { return model; }
  [[nodiscard]] bool historyEnabled() const override { return history; }
  [[nodiscard]] std::string personalVocabulary() const override { return vocabulary; }
  [[nodiscard]] std::optional<std::string> workerLanguageCode() const override { return language; }
  [[nodiscard]] std::string historyLanguageLabel() const override { return "Automatic"; }

  bool sounds = true;
  double forgottenMinutes = 10;
  bool escape = true;
  bool keepFailed = true;
  bool process = true;
  bool live = false;
  bool fillers = false;
  bool formatting = false;
  bool history = false;
  SmartRefinementRoutingMode routing = SmartRefinementRoutingMode::automaticByLanguage;
  SmartLocalModel model = SmartLocalModel::gemma4E2B;
  std::string vocabulary;
  std::optional<std::string> language;
};

class FakeDictationHistory final : public DictationHistory {
 public:
  void add(HistoryEntry entry) override { entries.push_back(std::move(entry)); }

  std::vector<HistoryEntry> entries;
};

class FakeSpeechModelStore final : public SpeechModelStore {
 public:
  [[nodiscard]] SpeechModelState state() const override { return current; }
  [[nodiscard]] std::filesystem::path activeModelURL() const override { return folder; }
  [[nodiscard]] bool requiredItemsPresent(const std::filesystem::path&) const override {
    return current != SpeechModelState::missing;
  }
  [[nodiscard]] bool verifyArtifacts(const std::filesystem::path&) const override {
    return current == SpeechModelState::ready;
  }
  void validate() override { ++validations; }
  [[nodiscard]] Registration onInventoryChange(std::function<void()> handler) override {
    return inventoryChange.subscribe(std::move(handler));
  }

  void become(SpeechModelState state) {
    current = state;
    inventoryChange.emit();
  }

  SpeechModelState current = SpeechModelState::ready;
  std::filesystem::path folder = "/models/speech";
  int validations = 0;
  Signal<> inventoryChange;
};

class FakeTranscriptionProvider final : public TranscriptionProvider {
 public:
  [[nodiscard]] const std::string& providerID() const override { return identifier; }
  Task<Result<TranscriptionResult>> transcribe(CapturedAudio, std::optional<std::string>) override {
    ADD_FAILURE() << "the coordinator leaves recognition to the session";
    co_return std::unexpected(MRMError(MRMError::Case::noSpeech));
  }

  std::string identifier = "fake-recogniser";
};

class FakeTranscriptionProviderFactory final : public TranscriptionProviderFactory {
 public:
  Result<std::shared_ptr<TranscriptionProvider>> make(std::function<void(bool)> warmupCompletion) override {
    ++made;
    if (failure) return std::unexpected(*failure);
    finishWarmup = std::move(warmupCompletion);
    return std::make_shared<FakeTranscriptionProvider>();
  }

  std::shared_ptr<TranscriptionProvider> makeNext(const std::optional<std::string>& language) override {
    nextFor = language;
    return nullptr;
  }

  int made = 0;
  std::optional<std::string> nextFor;
  std::optional<MRMError> failure;
  std::function<void(bool)> finishWarmup;
};

class UnusedRefiner final : public RefinementProvider {
 public:
  [[nodiscard]] const std::string& providerID() const override { return identifier; }
  Task<Result<SpokenText>> refine(SpokenText text) override { co_return text; }

  std::string identifier = "unused";
};

class FakeRefinementSource final : public RefinementSource {
 public:
  std::shared_ptr<RefinementProvider> makeRefinementProvider() override {
    ++made;
    return refiner;
  }
  void warmUp() override { ++warmUps; }

  std::shared_ptr<RefinementProvider> refiner = std::make_shared<UnusedRefiner>();

  int made = 0;
  int warmUps = 0;
};

/// Marks what it has cleaned, so that a second application shows.
class FakeTranscriptCleanUp final : public TranscriptCleanUp {
 public:
  [[nodiscard]] std::string clean(std::string text) override {
    return text.find_first_not_of(" \n\t") == std::string::npos ? text : "[" + text + "]";
  }
};

class FakeDictationSession final : public DictationSession {
 public:
  FakeDictationSession(DictationSessionConfiguration given,
                       Suspension<Result<DictationSessionResult>>& finishing, std::size_t& samples,
                       int& living)
      : configuration(std::move(given)), finishing_(finishing), samples_(samples), living_(living) {
    ++living_;
  }
  ~FakeDictationSession() override { --living_; }

  void append(PendingCapturedAudio audio) override {
    EXPECT_FALSE(finished_) << "audio after the end";
    samples_ += audio.monoSamples.size();
  }
  Task<Result<DictationSessionResult>> finish() override {
    EXPECT_FALSE(std::exchange(finished_, true)) << "a session is finished once";
    return finishing_.wait();
  }

  [[nodiscard]] std::vector<RecognisedPiece> recognisedSoFar() const override {
    return soFar.empty() ? std::vector<RecognisedPiece>()
                         : std::vector{RecognisedPiece{{}, SpokenText(soFar)}};
  }
  [[nodiscard]] DictationDiagnostics diagnostics() const override { return {}; }
  [[nodiscard]] bool heardSpeech() const override { return speaks; }

  DictationSessionConfiguration configuration;
  bool speaks = true;
  std::string soFar;

 private:
  Suspension<Result<DictationSessionResult>>& finishing_;
  std::size_t& samples_;
  int& living_;
  bool finished_ = false;
};

class FakeDictationSessionFactory final : public DictationSessionFactory {
 public:
  ~FakeDictationSessionFactory() override { EXPECT_EQ(living, 0) << "a session outlived its dictation"; }

  std::unique_ptr<DictationSession> make(DictationSessionConfiguration configuration) override {
    auto session =
        std::make_unique<FakeDictationSession>(std::move(configuration), finishing, samples, living);
    last = session.get();
    ++made;
    return session;
  }

  Suspension<Result<DictationSessionResult>> finishing;
  FakeDictationSession* last = nullptr;
  std::size_t samples = 0;
  int made = 0;
  int living = 0;
};

class FakeUpdateAdmissionGate final : public UpdateAdmissionGate {
 public:
  ~FakeUpdateAdmissionGate() override { EXPECT_TRUE(active.empty()) << "a token was not given back"; }

  std::optional<Token> begin() override {
    if (refuses) return std::nullopt;
    const Token token{next++};
    active.insert(token);
    return token;
  }
  void finish(Token token) override { EXPECT_EQ(active.erase(token), 1U) << "a token was given back twice"; }

  bool refuses = false;
  std::uint64_t next = 1;
  std::set<Token> active;
};

class FakeDownloadPriority final : public ModelDownloadPriorityCoordinator {
 public:
  ~FakeDownloadPriority() override { EXPECT_FALSE(runtimeActive) << "the priority was not given back"; }

  void notifyOptionalControls(bool active) override {
    EXPECT_NE(runtimeActive, active) << "told the same twice";
    runtimeActive = active;
  }

  bool runtimeActive = false;
};

class FakeOverlay final : public OverlayController {
 public:
  void update(const DictationState& state) override { titles.push_back(state.title()); }
  void setLevel(double level) override { lastLevel = level; }

  void showCaptureCondition(CaptureCondition shown) override { condition = shown; }
  void showHint(const std::string& given) override { hint = given; }

  std::vector<std::string> titles;
  CaptureCondition condition = CaptureCondition::fine;
  std::string hint;
  double lastLevel = 0;
};

}  // namespace murmel::test
