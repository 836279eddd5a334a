#include "History/HistoryCommand.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Settings/JsonDefaultsStore.h"
#include "Settings/SettingsCommand.h"
#include "Settings/VocabularyCommand.h"
#include "Settings/VocabularyStorage.h"
#include "Shell/ClipboardHolder.h"
#include "Shell/EditionKeys.h"
#include "Shell/Programs.h"
#include "Shell/StandardStreams.h"

#include <iostream>
#include <optional>

namespace murmel {

namespace {

CommandStreams standardStreams() {
  return {.print = show, .complain = complain, .input = std::cin};
}

int runHistory(Arguments arguments, const Installation& installation, const KeptDataRole& role) {
  std::optional<ClipboardHolder> holder;
  if (!role.arguments.empty() && role.arguments.front() == "copy") holder.emplace(arguments);
  PosixFileSystem files;
  SecretServiceStore secrets;
  auto keys = editionKeys(secrets, installation.identifier, historyKeyServiceSuffix);
  HistoryCommand command(HistoryFile(historyFile(files, keys, installation.folders.data)), standardStreams(),
                         [&holder](const SpokenText& text) { return holder->hold(text); });
  return command.run(role.arguments);
}

int runVocabulary(Arguments /*arguments*/, const Installation& installation, const KeptDataRole& role) {
  PosixFileSystem files;
  SecretServiceStore secrets;
  auto keys = editionKeys(secrets, installation.identifier, vocabularyKeyServiceSuffix);
  VocabularyCommand command(files, vocabularyFile(files, keys, installation.folders.data), standardStreams(),
                            [&secrets] { return secrets.unlock(); });
  return command.run(role.arguments);
}

int runSettings(Arguments /*arguments*/, const Installation& installation, const KeptDataRole& role) {
  PosixFileSystem files;
  JsonDefaultsStore store(files, defaultsFile(installation.folders.configuration));
  return SettingsCommand(store, installation.channel, standardStreams()).run(role.arguments);
}

}  // namespace

int runKeptData(Arguments arguments, const Installation& installation, const KeptDataRole& role) {
  const auto run = role.data == KeptDataRole::Data::history      ? &runHistory
                   : role.data == KeptDataRole::Data::vocabulary ? &runVocabulary
                                                                 : &runSettings;
  return run(arguments, installation, role);
}

}  // namespace murmel
