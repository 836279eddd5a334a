// usage: murmel_storage_witness FOLDER
//
// Keeps a sentence in the history and in the vocabulary, reads both again, deletes both, and stops after each
// stage
// ("kept", "deleted") until it gets a line, so that its memory can be searched. Then it leaves a core dump.

#include "Foundation/Async/SerialQueue.h"
#include "History/HistoryRepository.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Sentinel.h"
#include "Settings/JsonDefaultsStore.h"
#include "Settings/SettingsRepository.h"
#include "Storage/KeychainEncryptionKeyStore.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <sys/resource.h>
#include <unistd.h>

using namespace murmel;

namespace {

void stage(const char* name) {
  std::puts(name);
  std::fflush(stdout);
  if (std::getchar() == EOF) std::exit(1);
}

HistoryEntry entry(SpokenText text) {
  HistoryEntry made;
  made.id = Uuid::random();
  made.text = std::move(text);
  return made;
}

bool isKept(const HistoryRepository& history, const SettingsRepository& settings) {
  const SpokenText sentence(sentinelSentence());
  const SpokenText vocabulary(settings.personalVocabulary());
  return history.entries().size() == 5 && vocabulary.reveal().ends_with(sentence.reveal()) &&
         history.storageStatus() == SecureStorageStatus::available;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) return 2;
  const std::filesystem::path folder = arguments[1];
  PosixFileSystem files;
  SecretServiceStore secrets;
  KeychainEncryptionKeyStore historyKeys(secrets, "app.murmel.Test.traces.history");
  KeychainEncryptionKeyStore vocabularyKeys(secrets, "app.murmel.Test.traces.vocabulary");
  JsonDefaultsStore defaults(files, defaultsFile(folder));
  ManualExecutor executor;
  SerialQueue queue(executor, "private-storage");
  const auto openHistory = [&] {
    auto history =
        std::make_unique<HistoryRepository>(executor, queue, historyFile(files, historyKeys, folder));
    executor.waitUntil([&] { return history->isSettled(); });
    return history;
  };
  const auto openSettings = [&] {
    auto settings = std::make_unique<SettingsRepository>(SettingsRepositoryParameters{
        defaults, executor, queue, vocabularyFile(files, vocabularyKeys, folder)});
    settings->waitForPersonalVocabulary();
    return settings;
  };
  {
    auto history = openHistory();
    // More than one, so that the list grows and moves what it holds.
    for (int count = 0; count < 5; ++count) history->add(entry(SpokenText(sentinelSentence())));
    history->add(entry(SpokenText(sentinelSentence("\" \\ ", "\n"))));
    history->remove({history->entries()[2].id});
    openSettings()->setPersonalVocabulary(sentinelSentence("a = "));
  }
  auto history = openHistory();
  auto settings = openSettings();
  if (!isKept(*history, *settings)) return 1;
  stage("kept");

  history->deleteAll();
  settings->setPersonalVocabulary({});
  settings->waitForPersonalVocabulary();
  executor.waitUntil([&] { return history->isSettled(); });
  if (history->storageStatus() != SecureStorageStatus::available) return 1;
  stage("deleted");

  const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
  if (::setrlimit(RLIMIT_CORE, &unlimited) != 0 || ::chdir(folder.c_str()) != 0) return 3;
  std::abort();
}
