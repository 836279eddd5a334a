#include "Audio/AudioCaptureService.h"
#include "Dictation/SettingsRefinementSource.h"
#include "Dictation/SettingsTranscriptCleanUp.h"
#include "Foundation/Scope.h"
#include "Models/ModelManager.h"
#include "Platform/Linux/Journal/JournalLogSink.h"
#include "Platform/Linux/LanguageRecognizer/CLD2LanguageRecognizer.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Platform/Qt/QtExecutor.h"
#include "Product/MRMAppIdentity.h"
#include "Segmentation/IncrementalDictationSession.h"
#include "Shell/FileTranscription.h"
#include "Shell/FluidAudioRecognition.h"
#include "Shell/Programs.h"
#include "Shell/ProvisionalServices.h"
#include "Shell/RuntimePolicy.h"
#include "Shell/StandardOutputDelivery.h"

#include <QCoreApplication>
#include <cstdio>

#include <fmt/core.h>

namespace murmel {

namespace {

Task<void> exitWith(Task<int> work) {
  const int status = co_await work;
  QCoreApplication::exit(status);
}

void printLine(std::FILE* stream, const std::string& prefix, const std::string& text) {
  fmt::print(stream, "{}{}\n", prefix, text);
  std::fflush(stream);
}

}  // namespace

int runTranscribe(int& argumentCount, char** arguments, const ApplicationFolders& folders,
                  const InformationDictionary& info, const TranscribeRole& role) {
  const QCoreApplication application(argumentCount, arguments);
  QtExecutor executor;
  SystemClock clock;
  JournalLogSink log(JournalLogSink::Fallback::none);
  const auto identifier = MRMAppIdentity::applicationIdentifier(info);

  DefaultSettings settings;
  NoHistory history;
  const CLD2LanguageRecognizer languages;
  MissingModelRefiners modelRefiners;
  SettingsRefinementSource refinement(settings, modelRefiners, languages);
  SettingsTranscriptCleanUp cleanUp(settings);
  LinuxProcessLauncher launcher;
  ModelManager models(executor);
  models.validate();
  FluidAudioRecognition recognition({executor, clock, launcher}, {folders.resources, identifier}, models,
                                    runtimePolicy(folders));
  IncrementalDictationSessionFactory sessions({executor, clock, Logger(log, identifier, "incremental-stages"),
                                               &AudioCaptureService::convertForRecognition});
  StandardOutputDelivery delivery([](const std::string& text) { printLine(stdout, "", text); });

  FileTranscriptionServices services{
      .executor = executor,
      .clock = clock,
      .delivery = delivery,
      .settings = settings,
      .history = history,
      .models = models,
      .recognition = recognition,
      .refinement = refinement,
      .cleanUp = cleanUp,
      .sessions = sessions,
      .log = log,
      .applicationIdentifier = identifier,
      .temporaryDirectory = folders.temporary,
      .realTime = role.realTime,
      .complain = [](const std::string& sentence) { printLine(stderr, "murmel: ", sentence); },
  };
  Scope scope;
  // From inside the loop: an exit before it runs would be lost.
  executor.post([&] { scope.start(exitWith(transcribeFiles(services, role.files))); });
  return QCoreApplication::exec();
}

}  // namespace murmel
