#include "Foundation/Async/Timers.h"
#include "Recognition/FluidAudioProvider.h"
#include "Shell/Checks/Checks.h"
#include "Shell/Checks/SyntheticSpeech.h"
#include "Shell/LocalRuntimes.h"

#include <filesystem>
#include <utility>

#include <fmt/core.h>

namespace murmel {

Task<CheckResult> checkSpeechModel(CheckedServices services) {
  const auto folder = services.models.activeModelURL();
  if (!services.models.requiredItemsPresent(folder)) {
    co_return CheckResult{CheckState::broken, "There is no speech model in " + folder.string() +
                                                  ". Download one, or install pocketsphinx-en-us."};
  }
  constexpr Duration interval = std::chrono::milliseconds(50);
  while (services.models.state() == SpeechModelState::verifying) {
    auto waiting = sleepFor(services.executor, interval);
    co_await waiting;
  }
  if (services.models.state() == SpeechModelState::missing) {
    co_return CheckResult{CheckState::broken,
                          "The speech model in " + folder.string() + " is damaged. Download it again."};
  }
  const auto& engine = services.models.activeEngine();
  auto found = fmt::format("{} ({}), in {}.", engine.title, engine.quality, folder.string());
  if (&engine == &speechEngines.back()) found += " “murmel models download” fetches a better one.";
  co_return CheckResult{CheckState::works, std::move(found)};
}

/// Has the worker recognise a second of something like speech. Whether it finds a word in it does not matter;
/// that it answers does.
Task<CheckResult> checkSpeechRecognition(CheckedServices services) {
  const auto worker = services.installation.folders.resources / "Workers" / FluidAudioProvider::workerName;
  std::error_code failure;
  if (!std::filesystem::exists(worker, failure))
    co_return CheckResult{CheckState::broken, "The worker is missing: " + worker.string()};
  if (!FluidAudioProvider::mayStart(services.installation.policy, worker)) {
    co_return CheckResult{CheckState::broken,
                          "The worker or its engine is not as the makers of this Murmel signed it. Install "
                          "Murmel again."};
  }
  auto recogniser = services.recognition.make({});
  if (!recogniser) co_return CheckResult{CheckState::broken, recogniser.error().localizedDescription() + "."};
  auto recognising = (*recogniser)->transcribe(syntheticSpeech(), std::nullopt);
  const auto answer = co_await recognising;
  const bool answered = answer || answer.error().which() == MRMError::Case::noSpeech ||
                        answer.error().which() == MRMError::Case::unrecognizedSpeech;
  if (!answered) co_return CheckResult{CheckState::broken, answer.error().localizedDescription() + "."};
  co_return CheckResult{CheckState::works, "The worker has recognised a second of sound."};
}

Task<CheckResult> checkRefiners(CheckedServices services) {
  const bool wanted = services.smartFormatting();
  auto reading = services.queue.run(
      [&installation = services.installation] { return LocalRuntimes::of(installation, true); });
  const auto runtimes = co_await reading;
  auto words = std::string(wanted ? "Formatting is on." : "Formatting is off.");
  if (!runtimes.languageModels.empty())
    words += fmt::format(" Language models cannot run here: {}.", runtimes.languageModels);
  if (!runtimes.russian.empty())
    words += fmt::format(" The corrector for Russian cannot run here: {}.", runtimes.russian);
  const bool isLimited = wanted && !(runtimes.languageModels.empty() && runtimes.russian.empty());
  co_return CheckResult{isLimited ? CheckState::limited : CheckState::works, std::move(words)};
}

}  // namespace murmel
