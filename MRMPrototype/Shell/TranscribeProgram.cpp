#include "Audio/AudioCaptureService.h"
#include "Foundation/Scope.h"
#include "Models/ModelManager.h"
#include "Platform/Linux/Journal/JournalLogSink.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Platform/Qt/QtExecutor.h"
#include "Product/MRMAppIdentity.h"
#include "Segmentation/SingleSegmentSession.h"
#include "Shell/FileTranscription.h"
#include "Shell/FluidAudioRecognition.h"
#include "Shell/Programs.h"
#include "Shell/StandardOutputDelivery.h"

#include <QCoreApplication>
#include <fmt/core.h>
#include <cstdio>

namespace murmel {

namespace {

Task<void> exitWith(Task<int> work) {
  const int status = co_await work;
  QCoreApplication::exit(status);
}

}  // namespace

int runTranscribe(int& argumentCount, char** arguments, const ApplicationFolders& folders,
                  const InformationDictionary& info, const TranscribeRole& role) {
  const QCoreApplication application(argumentCount, arguments);
  QtExecutor executor;
  SystemClock clock;
  JournalLogSink log(JournalLogSink::Fallback::none);
  const auto identifier = MRMAppIdentity::applicationIdentifier(info);

  LinuxProcessLauncher launcher;
  ModelManager models(executor);
  models.validate();
  FluidAudioRecognition recognition({executor, clock, launcher}, {folders.resources, identifier}, models,
                                    makeRuntimePolicy(folders));
  SingleSegmentSessionFactory sessions(&capturedAudioForRecognition);
  StandardOutputDelivery delivery([](const std::string& text) {
    fmt::print("{}\n", text);
    std::fflush(stdout);
  });
  return 0;
}

}  // namespace murmel
