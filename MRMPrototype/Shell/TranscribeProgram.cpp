#include "Foundation/Scope.h"
#include "Platform/Linux/Journal/JournalLogSink.h"
#include "Platform/Qt/QtExecutor.h"
#include "Product/MRMAppIdentity.h"
#include "Shell/FileTranscription.h"
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

  StorageServices storage(
      folders, identifier, [](SmartLocalModel) { return false; }, nullptr);
  for (const auto& message : storage.defaults.messages()) printLine(stderr, "murmel: ", message);
  TranscriptionSettings settings(storage.settings, role);
  SpeechServices speech(executor, clock, log, folders, identifier, settings);
  StandardOutputDelivery delivery([](const std::string& text) { printLine(stdout, "", text); });

  FileTranscriptionServices services{
      .executor = executor,
      .clock = clock,
      .delivery = delivery,
      .settings = settings,
      .history = storage.history,
      .models = speech.models,
      .recognition = speech.recognition,
      .refinement = speech.refinement,
      .cleanUp = speech.cleanUp,
      .sessions = speech.sessions,
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
