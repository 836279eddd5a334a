#include "Settings/VocabularyStorage.h"

#include "Foundation/Text/Text.h"
#include "Settings/SettingsKeys.h"

#include <optional>
#include <string_view>
#include <utility>

namespace murmel {

SpokenText VocabularyStorage::load(DefaultsStore& defaults) {
  const auto failed = [this] {
    status_ = SecureStorageStatus::unavailable;
    loadedSuccessfully_ = false;
    return SpokenText();
  };
  status_ = SecureStorageStatus::available;
  loadedSuccessfully_ = true;
  const auto sealed = file_.read();
  if (!sealed) return failed();
  if (*sealed) {
    const auto bytes = (*sealed)->reveal();
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (!text::isValidUtf8(text)) return failed();
    return SpokenText(std::string(text));
  }
  auto legacy = defaults.get<std::string>(settingsKey::legacyPersonalVocabulary);
  if (!legacy) return {};
  SpokenText text(*std::move(legacy));
  if (!write(text)) return failed();
  defaults.remove(settingsKey::legacyPersonalVocabulary);
  return text;
}

void VocabularyStorage::store(const SpokenText& text) {
  const bool stored = loadedSuccessfully_ && write(text);
  status_ = stored ? SecureStorageStatus::available : SecureStorageStatus::unavailable;
}

bool VocabularyStorage::write(const SpokenText& text) {
  if (text.empty()) return file_.deleteCryptographically().has_value();
  const auto& plain = text.reveal();
  const std::span bytes(reinterpret_cast<const std::uint8_t*>(plain.data()), plain.size());
  return file_.write(bytes).has_value();
}

SecureLocalFile vocabularyFile(FileSystem& files, LocalEncryptionKeyStore& keyStore,
                               const std::filesystem::path& dataFolder,
                               const std::optional<std::filesystem::path>& fileURL) {
  const auto standard = dataFolder / "personal-vocabulary.sealed";
  if (fileURL && *fileURL != standard) return {files, keyStore, *fileURL};
  return {files, keyStore, standard, {dataFolder / "personal-vocabulary.txt"}};
}

}  // namespace murmel
