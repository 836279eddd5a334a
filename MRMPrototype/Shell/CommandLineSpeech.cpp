#include "Shell/CommandLineSpeech.h"

#include "Foundation/Async/Timers.h"
#include "Shell/Confinement.h"

#include <thread>
#include <utility>

namespace murmel {

namespace {

constexpr Duration verificationInterval = std::chrono::milliseconds(20);
/// A key ring that many ask at once, on a machine that is busy with speech, may miss its time.
constexpr Duration busyLimit = std::chrono::seconds(3);
constexpr Duration busyInterval = std::chrono::milliseconds(100);

Task<void> exitWith(Task<int> work) {
  const int status = co_await work;
  QCoreApplication::exit(status);
}

}  // namespace

CommandLineSpeech::CommandLineSpeech(Arguments arguments, const Installation& givenInstallation,
                                     const SpeechOptions& options)
    : application_(arguments.count, arguments.values),
      launcher_(confinementPolicy(givenInstallation)),
      models_({executor, clock, log_, launcher_, memory}, givenInstallation),
      storage_(
          executor, givenInstallation, [this](SmartLocalModel model) { return models_.readiness(model); },
          nullptr),
      settings_(storage_.settings, options),
      speech_({executor, clock, log_, launcher_, memory}, givenInstallation, models_, settings_),
      installation(givenInstallation),
      services{executor,         clock,           settings_,       speech_.recognition,
               speech_.refiners, speech_.cleanUp, speech_.sessions},
      options_(options) {
  storage_.settings.waitForPersonalVocabulary();
  for (const auto& message : storage_.defaults.messages()) output.complain(message);
}

int CommandLineSpeech::run(Task<int> work) {
  // From inside the loop: an exit before it runs would be lost.
  executor.post([this, work = std::move(work)]() mutable { scope_.start(exitWith(std::move(work))); });
  const int status = QCoreApplication::exec();
  // Whoever is interrupted goes before what it uses.
  scope_.cancelAll();
  const auto kept = finishHistory();
  if (kept) return status;
  output.complain("the text could not be kept in the history: " + kept.error().description());
  return status == 0 ? 1 : status;
}

SecureResult<void> CommandLineSpeech::finishHistory() {
  using Error = SecureLocalStorageError;
  auto kept = storage_.history.finish();
  const auto isBusy = [&kept] {
    return !kept && (kept.error().which() == Error::Case::file ||
                     kept.error() == Error::keychain(secretStatus::serviceUnavailable));
  };
  for (const auto end = clock.now() + busyLimit; isBusy() && clock.now() < end;) {
    std::this_thread::sleep_for(busyInterval);
    kept = storage_.history.finish();
  }
  return kept;
}

void CommandLineSpeech::leave(int status) {
  QCoreApplication::exit(status);
}

Task<std::expected<void, std::string>> CommandLineSpeech::prepare() {
  while (models_.speech->state() == SpeechModelState::verifying) {
    auto pause = sleepFor(executor, verificationInterval);
    co_await pause;
  }
  if (models_.speech->state() == SpeechModelState::missing)
    co_return std::unexpected("Required Parakeet speech model is not installed");
  if (options_.language) {
    auto made = speech_.recognition.makeFor(*options_.language);
    if (!made) co_return std::unexpected(made.error());
    services.recogniser = *std::move(made);
  } else {
    auto made = speech_.recognition.make(nullptr);
    if (!made) co_return std::unexpected(made.error().localizedDescription());
    services.recogniser = *std::move(made);
  }
  if (!options_.refine) co_return std::expected<void, std::string>();
  // Whoever asks for formatting on the command line waits for the models; dictation does not.
  auto preparing = speech_.refiners.prepared();
  const bool isReady = co_await preparing;
  if (!isReady) {
    output.complain(MRMError(MRMError::Case::smartModelMissing).localizedDescription() +
                    "; the text stays as it was recognized");
  }
  co_return std::expected<void, std::string>();
}

void CommandLineSpeech::keep(const Transcript& transcript) {
  if (options_.history && !storage_.settings.historyEnabled() && !std::exchange(saidHistoryIsOff_, true))
    output.complain(
        "the history is switched off, so the text is not kept: murmel settings set historyEnabled true");
  if (!settings_.historyEnabled() || transcript.text.empty()) return;
  const auto now = clock.wallNow();
  HistoryEntry entry;
  entry.id = Uuid::random();
  entry.createdAt = historyDate(now);
  entry.text = transcript.text;
  entry.providerID = services.recogniser->providerID();
  entry.language = settings_.historyLanguageLabel();
  entry.unrecognizedParts = static_cast<int>(transcript.missing.size());
  storage_.history.add(std::move(entry));
  storage_.history.prune(storage_.settings.historyRetention(), now);
}

}  // namespace murmel
