#pragma once

#include "Shell/Installation.h"
#include "Shell/IntelCommand.h"
#include "Shell/LaunchRole.h"

namespace murmel {

/// The arguments of `main`, which Qt wants by reference for as long as its application lives.
struct Arguments {
  int& count;
  char** values;
};

/// The programs that this executable can be. Each makes its own Qt application, puts its services together,
/// runs, and gives the exit status.

/// The desktop application.
int runDesktop(Arguments arguments, const Installation& installation, const DesktopRole& role);
/// Audio files to text, without a desktop.
int runTranscribe(Arguments arguments, const Installation& installation, const TranscribeRole& role);
/// From the microphone to the standard output, without a desktop.
int runListen(Arguments arguments, const Installation& installation, const ListenRole& role);
/// One command to the running instance: `commandStatus`.
int runRemoteCommand(Arguments arguments, const Installation& installation, IntelCommand command);
/// What the running instance is doing.
int runStatus(Arguments arguments, const Installation& installation, const StatusRole& role);
/// What works on this desktop; 1 when dictation cannot work.
int runDoctor(Arguments arguments, const Installation& installation, const DoctorRole& role);
/// Lists, downloads, verifies and removes models.
int runModels(Arguments arguments, const Installation& installation, const ModelsRole& role);
/// Looks for a new version, and installs it when that is asked for.
int runUpdate(Arguments arguments, const Installation& installation, const UpdateRole& role);
/// The history, the vocabulary or the settings, on their files.
int runKeptData(Arguments arguments, const Installation& installation, const KeptDataRole& role);
/// The release probe of the model downloader.
int runModelDownloadProbe(Arguments arguments, const Installation& installation);

}  // namespace murmel
