#pragma once

#include "Foundation/Async/Scope.h"
#include "Platform/Linux/Journal/JournalLogSink.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Platform/Linux/Process/MappedMemory.h"
#include "Platform/Qt/QtExecutor.h"
#include "Shell/FileTranscription.h"
#include "Shell/InterruptSignal.h"
#include "Shell/ModelServices.h"
#include "Shell/Programs.h"
#include "Shell/SpeechServices.h"
#include "Shell/StorageServices.h"
#include "Shell/TerminalOutput.h"
#include "Shell/TranscriptionSettings.h"

#include <QCoreApplication>
#include <expected>
#include <memory>
#include <string>

namespace murmel {

/// What the programs that recognise speech without a desktop are made of. Main thread.
class CommandLineSpeech {
 public:
  CommandLineSpeech(Arguments arguments, const Installation& installation, const SpeechOptions& options);

  /// Runs `work` in the event loop; gives the exit status.
  int run(Task<int> work);
  /// Leaves the event loop, and gives up what runs in it.
  void leave(int status);

  /// Makes `services.recogniser`, and the models for the formatting where it was asked for. The error is a
  /// sentence.
  Task<std::expected<void, std::string>> prepare();
  /// Into the history, where the user keeps one.
  void keep(const Transcript& transcript);

 private:
  QCoreApplication application_;

 public:
  QtExecutor executor;
  InterruptSignal interrupt{executor};
  SystemClock clock;
  MappedMemory memory;

 private:
  JournalLogSink log_{JournalLogSink::Fallback::none};
  LinuxProcessLauncher launcher_;
  ModelServices models_;
  StorageServices storage_;
  TranscriptionSettings settings_;
  SpeechServices speech_;

 public:
  const Installation& installation;
  TranscriptionServices services;
  TerminalOutput output;

 private:
  SecureResult<void> finishHistory();

  SpeechOptions options_;
  bool saidHistoryIsOff_ = false;
  Scope scope_;
};

}  // namespace murmel
