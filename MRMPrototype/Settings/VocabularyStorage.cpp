#include "Settings/VocabularyStorage.h"

#include "Foundation/Text/Text.h"
#include "Settings/SettingsKeys.h"

#include <set>
#include <sstream>
#include <string_view>
#include <utility>

namespace murmel {

using Error = SecureLocalStorageError;

/// What the queue works with.
struct VocabularyStorage::File {
  SecureLocalFile file;
  std::optional<Error> unreadable;

  std::optional<Error> write(const SpokenText& text) {
    const auto& plain = text.reveal();
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(plain.data()), plain.size());
    const auto written = plain.empty() ? file.deleteCryptographically() : file.write(bytes);
    return written ? std::nullopt : std::optional(written.error());
  }

  Outcome load(const std::optional<SpokenText>& legacy) {
    auto outcome = attempt(legacy);
    unreadable = outcome.trouble;
    return outcome;
  }

 private:
  Outcome attempt(const std::optional<SpokenText>& legacy) {
    const auto sealed = file.read();
    if (!sealed) return {std::nullopt, sealed.error()};
    Outcome outcome{SpokenText(), std::nullopt};
    if (*sealed) {
      const auto bytes = (*sealed)->reveal();
      const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
      if (!text::isValidUtf8(text)) return {std::nullopt, Error(Error::Case::unreadableContent)};
      outcome.read = SpokenText(std::string(text));
    } else if (legacy) {
      if (const auto failed = write(*legacy)) return {std::nullopt, failed};
      outcome.read = *legacy;
      outcome.tookLegacy = true;
    }
    return outcome;
  }
};

VocabularyStorage::VocabularyStorage(Executor& executor, SerialQueue& queue, SecureLocalFile file,
                                     std::function<void()> changed)
    : executor_(executor),
      queue_(queue),
      file_(std::make_shared<File>(File{std::move(file), std::nullopt})),
      changed_(std::move(changed)) {}

VocabularyStorage::~VocabularyStorage() {
  if (last_.valid()) last_.wait();
}

void VocabularyStorage::load(DefaultsStore& defaults) {
  defaults_ = &defaults;
  std::optional<SpokenText> legacy;
  if (auto text = defaults.get<std::string>(settingsKey::legacyPersonalVocabulary))
    legacy = SpokenText(*std::move(text));
  begin([legacy = std::move(legacy)](File& file) { return file.load(legacy); });
}

void VocabularyStorage::store(SpokenText text) {
  text_ = text;
  begin([text = std::move(text)](File& file) -> Outcome {
    if (file.unreadable) return {.read = {}, .trouble = file.unreadable, .isBlind = true};
    return {std::nullopt, file.write(text)};
  });
  isUnstored_ = true;
}

/// Only the answer of the last job counts: it is the one that has seen everything.
void VocabularyStorage::begin(std::move_only_function<Outcome(File&)> work) {
  outcome_ = std::make_shared<std::optional<Outcome>>();
  auto done = std::make_shared<std::promise<void>>();
  last_ = done->get_future().share();
  queue_.enqueue([this, file = file_, work = std::move(work), outcome = outcome_, done, &executor = executor_,
                  alive = std::weak_ptr(alive_)]() mutable {
    outcome->emplace(work(*file));
    done->set_value();
    executor.post([this, outcome, alive] {
      if (alive.expired() || !*outcome) return;
      auto answer = *std::exchange(*outcome, std::nullopt);
      if (answer.tookLegacy) defaults_->remove(settingsKey::legacyPersonalVocabulary);
      if (outcome == outcome_) take(std::move(answer));
    });
  });
}

void VocabularyStorage::wait() {
  while (outcome_ && last_.valid()) {
    last_.wait();
    if (!*outcome_) return;
    auto answer = *std::exchange(*outcome_, std::nullopt);
    if (answer.tookLegacy) defaults_->remove(settingsKey::legacyPersonalVocabulary);
    take(std::move(answer));
  }
}

void VocabularyStorage::take(Outcome outcome) {
  trouble_ = outcome.trouble;
  isBlind_ = isBlind_ || outcome.isBlind;
  if (outcome.read && isUnstored_) {
    const bool isBlind = std::exchange(isBlind_, false);
    store(isBlind ? SpokenText(mergedVocabulary(outcome.read->reveal(), text_.reveal())) : text_);
  } else if (outcome.read) {
    text_ = *std::move(outcome.read);
  } else if (!trouble_) {
    isUnstored_ = false;
  }
  changed_();
}

std::string mergedVocabulary(const std::string& stored, const std::string& written) {
  auto merged = stored;
  std::set<std::string> known;
  std::string line;
  for (std::istringstream lines(stored); std::getline(lines, line);) known.insert(line);
  for (std::istringstream lines(written); std::getline(lines, line);) {
    if (line.empty() || !known.insert(line).second) continue;
    if (!merged.empty() && !merged.ends_with('\n')) merged += '\n';
    merged += line;
  }
  return merged;
}

SecureLocalFile vocabularyFile(FileSystem& files, LocalEncryptionKeyStore& keyStore,
                               const std::filesystem::path& dataFolder,
                               const std::optional<std::filesystem::path>& fileURL) {
  const auto standard = dataFolder / vocabularyFileName;
  if (fileURL && *fileURL != standard) return {files, keyStore, *fileURL};
  return {files, keyStore, standard, {dataFolder / "personal-vocabulary.txt"}};
}

}  // namespace murmel
