#pragma once

#include "Product/InformationDictionary.h"
#include "Shell/ApplicationFolders.h"
#include "Shell/IntelCommand.h"
#include "Shell/LaunchRole.h"

namespace murmel {

/// The programs that this executable can be. Each makes its own Qt application from the arguments of `main`,
/// puts its services together, runs, and gives the exit status.

/// The desktop application.
int runDesktop(int& argumentCount, char** arguments, const ApplicationFolders& folders,
               const InformationDictionary& info, LaunchSelfTest selfTest);
/// Audio files to text, without a desktop.
int runTranscribe(int& argumentCount, char** arguments, const ApplicationFolders& folders,
                  const InformationDictionary& info, const TranscribeRole& role);
/// One command to the running instance; 1 when there is none.
int runRemoteCommand(int& argumentCount, char** arguments, const InformationDictionary& info,
                     IntelCommand command);
/// What works on this desktop; 1 when dictation cannot work.
int runDoctor(int& argumentCount, char** arguments, const ApplicationFolders& folders,
              const InformationDictionary& info);
/// Lists, downloads, verifies and removes models.
int runModels(int& argumentCount, char** arguments, const ApplicationFolders& folders,
              const InformationDictionary& info, const ModelsRole& role);
/// The release probe of the model downloader.
int runModelDownloadProbe(int& argumentCount, char** arguments, const ApplicationFolders& folders,
                          const InformationDictionary& info);

}  // namespace murmel
