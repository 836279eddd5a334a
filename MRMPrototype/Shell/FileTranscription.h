#pragma once

#include "Delivery/TextInsertion.h"
#include "Dictation/RefinementSource.h"
#include "Dictation/TranscriptCleanUp.h"
#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Task.h"
#include "Foundation/Log.h"
#include "History/DictationHistory.h"
#include "Models/SpeechModelStore.h"
#include "Recognition/TranscriptionProviderFactory.h"
#include "Segmentation/DictationSession.h"
#include "Settings/DictationSettings.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace murmel {

/// What the transcription of files is made of; all of it outlives the transcription.
struct FileTranscriptionServices {
  Executor& executor;
  Clock& clock;
  TextInsertion& delivery;
  DictationSettings& settings;
  DictationHistory& history;
  SpeechModelStore& models;
  TranscriptionProviderFactory& recognition;
  RefinementSource& refinement;
  TranscriptCleanUp& cleanUp;
  DictationSessionFactory& sessions;
  LogSink& log;
  std::string applicationIdentifier;
  std::filesystem::path temporaryDirectory;
  bool realTime = false;
  /// One line for the user about a file that was not transcribed.
  std::function<void(const std::string&)> complain;
};

/// Dictates audio files one after the other, on the same road as speech: capture, coordinator, session,
/// worker, delivery. Gives the exit status: 0 when every file was read to its end, 1 otherwise. A file in
/// which nobody speaks is no error.
Task<int> transcribeFiles(FileTranscriptionServices services, std::vector<std::filesystem::path> files);

}  // namespace murmel
