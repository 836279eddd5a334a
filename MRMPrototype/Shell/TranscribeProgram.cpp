#include "Foundation/Async/Scope.h"
#include "Platform/Linux/Journal/JournalLogSink.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Platform/Qt/QtExecutor.h"
#include "Shell/FileTranscription.h"
#include "Shell/ModelServices.h"
#include "Shell/Programs.h"
#include "Shell/SpeechServices.h"
#include "Shell/StandardOutputDelivery.h"
#include "Shell/StorageServices.h"
#include "Shell/TranscriptionSettings.h"

#include <QCoreApplication>
#include <cstdio>

#include <fmt/core.h>

namespace murmel {

namespace {

Task<void> exitWith(Task<int> work) {
  const int status = co_await work;
  QCoreApplication::exit(status);
}

/// Whoever asks for formatting on the command line waits for the models; dictation does not.
Task<int> refineAndTranscribe(FileTranscriptionServices services, LocalModelRefiners& refiners,
                              SmartLocalModel model, std::vector<std::filesystem::path> files) {
  auto preparingModel = refiners.prepared(model);
  const bool modelReady = co_await preparingModel;
  auto preparingRussian = refiners.russianPrepared();
  const bool russianReady = co_await preparingRussian;
  if (!modelReady && !russianReady) {
    services.complain(MRMError(MRMError::Case::smartModelMissing).localizedDescription() +
                      "; the text stays as it was recognized");
  }
  auto transcribing = transcribeFiles(services, files);
  const int status = co_await transcribing;
  co_return status;
}

void printLine(std::FILE* stream, const std::string& prefix, const std::string& text) {
  fmt::print(stream, "{}{}\n", prefix, text);
  std::fflush(stream);
}

}  // namespace

int runTranscribe(Arguments arguments, const Installation& installation, const TranscribeRole& role) {
  const QCoreApplication application(arguments.count, arguments.values);
  QtExecutor executor;
  SystemClock clock;
  JournalLogSink log(JournalLogSink::Fallback::none);
  LinuxProcessLauncher launcher;
  const ProcessServices process{executor, clock, log, launcher};
  ModelServices models(process, installation);
  StorageServices storage(
      executor, installation, [&models](SmartLocalModel model) { return models.readiness(model); }, nullptr);
  storage.settings.waitForPersonalVocabulary();
  for (const auto& message : storage.defaults.messages()) printLine(stderr, "murmel: ", message);
  TranscriptionSettings settings(storage.settings, role);
  SpeechServices speech(process, installation, models, settings);
  StandardOutputDelivery delivery([](const std::string& text) { printLine(stdout, "", text); });

  FileTranscriptionServices services{
      .executor = executor,
      .clock = clock,
      .delivery = delivery,
      .settings = settings,
      .history = storage.history,
      .models = *models.speech,
      .recognition = speech.recognition,
      .refinement = speech.refinement,
      .cleanUp = speech.cleanUp,
      .sessions = speech.sessions,
      .log = log,
      .applicationIdentifier = installation.identifier,
      .temporaryDirectory = installation.folders.temporary,
      .realTime = role.realTime,
      .complain = [](const std::string& sentence) { printLine(stderr, "murmel: ", sentence); },
  };
  Scope scope;
  // From inside the loop: an exit before it runs would be lost.
  executor.post([&] {
    auto work = role.refine
                    ? refineAndTranscribe(services, speech.refiners, settings.smartLocalModel(), role.files)
                    : transcribeFiles(services, role.files);
    scope.start(exitWith(std::move(work)));
  });
  const int status = QCoreApplication::exec();
  if (storage.history.finish()) return status;
  printLine(stderr, "murmel: ", "The text could not be kept in the history.");
  return 1;
}

}  // namespace murmel
