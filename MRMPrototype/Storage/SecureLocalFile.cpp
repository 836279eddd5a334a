#include "Storage/SecureLocalFile.h"

#include "Foundation/Crypto/AesGcm.h"
#include "Foundation/Crypto/Base64.h"
#include "Foundation/Crypto/Wipe.h"
#include "Storage/SecureLocalEnvelope.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace murmel {

namespace {

using Error = SecureLocalStorageError;
using namespace std::chrono_literals;

constexpr unsigned ownerOnly = 0600;
// Years of dictation are some tens of megabytes; beyond this a file is not ours.
constexpr std::uint64_t largestFile = std::uint64_t{512} << 20;
constexpr std::uint64_t largestEnvelopeOverhead = 1024;
// Longer than several writers that are alive take, one after the other.
constexpr Duration lockLimit = 5s;
// How often a reader follows another process that changes file and key.
constexpr int readAttempts = 4;

std::unexpected<Error> fileError(int errorNumber) {
  return std::unexpected(Error::file(errorNumber));
}

std::span<const std::uint8_t> magicBytes() {
  constexpr auto magic = SecureLocalEnvelope::magic;
  return {reinterpret_cast<const std::uint8_t*>(magic.data()), magic.size()};
}

}  // namespace

SecureLocalFile::SecureLocalFile(FileSystem& files, LocalEncryptionKeyStore& keyStore,
                                 std::filesystem::path fileURL,
                                 std::vector<std::filesystem::path> legacyFileURLs,
                                 SetFilePermissions setFilePermissions, WriteAtomically writeAtomically)
    : files_(files),
      keyStore_(keyStore),
      fileURL_(std::move(fileURL)),
      legacyFileURLs_(std::move(legacyFileURLs)),
      setFilePermissions_(std::move(setFilePermissions)),
      writeAtomically_(std::move(writeAtomically)),
      pending_(files, fileURL_) {
  if (!setFilePermissions_) {
    setFilePermissions_ = [&files](const auto& file) { return files.setPermissions(file, ownerOnly); };
  }
  if (!writeAtomically_) {
    writeAtomically_ = [&files](auto bytes, const auto& file, const auto& prepare) {
      return replaceFile(files, file, bytes, prepare);
    };
  }
}

SecureResult<UniqueDescriptor> SecureLocalFile::lock() {
  auto lock = files_.lock(lockPath(fileURL_), lockLimit);
  if (!lock) return fileError(lock.error());
  return std::move(*lock);
}

SecureResult<std::optional<std::vector<std::uint8_t>>> SecureLocalFile::fileBytes(
    const std::filesystem::path& file) {
  auto bytes = readWholeFile(files_, file, largestFile, magicBytes());
  if (!bytes) return fileError(bytes.error());
  return std::move(*bytes);
}

SecureResult<std::optional<std::string>> SecureLocalFile::keyIDOf(const std::filesystem::path& file) {
  auto bytes = fileBytes(file);
  if (!bytes) return std::unexpected(bytes.error());
  if (!*bytes || !SecureLocalEnvelope::hasMagic(**bytes)) return std::nullopt;
  auto envelope = SecureLocalEnvelope::decode(**bytes);
  if (!envelope) return std::unexpected(envelope.error());
  return std::move(envelope->keyID);
}

SecureLocalFile::Decrypted SecureLocalFile::decrypt(std::span<const std::uint8_t> bytes) {
  auto envelope = SecureLocalEnvelope::decode(bytes);
  if (!envelope) return {{}, std::unexpected(envelope.error())};
  Decrypted result{envelope->keyID, std::unexpected(Error(Error::Case::keyUnavailable))};
  if (envelope->version != SecureLocalEnvelope::currentVersion) return result;
  const auto key = keyStore_.key(envelope->keyID);
  if (!key) {
    result.plaintext = std::unexpected(key.error());
  } else if (*key) {
    auto plaintext = crypto::openAes256Gcm(**key, envelope->sealedData);
    if (plaintext) {
      result.plaintext = std::move(*plaintext);
    } else {
      result.plaintext = std::unexpected(Error(Error::Case::authenticationFailed));
    }
  }
  return result;
}

SecureResult<std::optional<SecretBytes>> SecureLocalFile::read() {
  finishInterruptedIfAny();
  auto sealed = readSealed();
  if (!sealed || *sealed) return sealed;
  const auto old = legacy();
  if (!old) return std::unexpected(old.error());
  if (!*old) return std::nullopt;
  std::optional<SecretBytes> plaintext;
  const auto migrated = update([&plaintext](const std::optional<SecretBytes>& content) {
    if (content) plaintext = content->copy();
    return SecureResult<std::optional<SecretBytes>>(std::nullopt);
  });
  if (!migrated) return std::unexpected(migrated.error());
  return plaintext;
}

SecureResult<std::optional<SecretBytes>> SecureLocalFile::readSealed() {
  std::string lastKeyID;
  for (int attempt = 1;; ++attempt) {
    auto bytes = fileBytes(fileURL_);
    if (!bytes) return std::unexpected(bytes.error());
    if (!*bytes) return std::nullopt;
    auto decrypted = decrypt(**bytes);
    if (decrypted.plaintext) {
      removeMigratedLegacyFiles(*decrypted.plaintext);
      return std::move(*decrypted.plaintext);
    }
    const auto error = decrypted.plaintext.error();
    // Another process may have written between our look at the file and our look for its key.
    const bool mayHaveChanged = error.which() == Error::Case::keyUnavailable && decrypted.keyID != lastKeyID;
    if (!mayHaveChanged || attempt == readAttempts) return std::unexpected(error);
    lastKeyID = std::move(decrypted.keyID);
  }
}

SecureResult<std::optional<SecureLocalFile::Legacy>> SecureLocalFile::legacy() {
  for (const auto& file : legacyFileURLs_) {
    auto bytes = readWholeFile(files_, file, largestFile);
    if (!bytes) return fileError(bytes.error());
    if (!*bytes) continue;
    Legacy found{file, SecretBytes{std::span<const std::uint8_t>(**bytes)}};
    wipe(std::span(**bytes));
    return found;
  }
  return std::nullopt;
}

void SecureLocalFile::removeMigratedLegacyFiles(const SecretBytes& plaintext) {
  // A migration that was cut short after it had sealed the data left the plain text. Only an identical file
  // is taken for that; anything else is not ours to delete.
  for (const auto& legacy : legacyFileURLs_) {
    auto bytes = readWholeFile(files_, legacy, plaintext.size());
    if (!bytes || !*bytes) continue;
    const bool identical = std::ranges::equal(**bytes, plaintext.reveal());
    wipe(std::span(**bytes));
    if (identical) (void)files_.remove(legacy);  // tried again at the next read
  }
}

SecureResult<void> SecureLocalFile::write(std::span<const std::uint8_t> plaintext) {
  if (const auto made = files_.makeFolders(fileURL_.parent_path()); !made) return fileError(made.error());
  const auto lock = this->lock();
  if (!lock) return std::unexpected(lock.error());
  auto obsolete = finishInterrupted();
  if (!obsolete) return std::unexpected(obsolete.error());
  return replace(plaintext, *std::move(obsolete));
}

SecureResult<void> SecureLocalFile::update(const Change& change, OnDamage onDamage) {
  if (const auto made = files_.makeFolders(fileURL_.parent_path()); !made) return fileError(made.error());
  const auto lock = this->lock();
  if (!lock) return std::unexpected(lock.error());
  auto obsolete = finishInterrupted();
  if (!obsolete) return std::unexpected(obsolete.error());

  auto content = readSealed();
  std::optional<Legacy> old;
  if (content && !*content) {
    auto found = legacy();
    if (!found) return std::unexpected(found.error());
    old = *std::move(found);
    if (old) *content = old->plaintext.copy();
  }
  auto changed = content ? change(*content) : std::unexpected(content.error());
  if (!changed && changed.error().isDamage() && onDamage == OnDamage::setAside) {
    const auto aside = setFileAside(files_, old ? old->file : fileURL_);
    if (!aside) return fileError(aside.error());
    old.reset();
    changed = change(std::nullopt);
  }
  if (!changed) return std::unexpected(changed.error());

  if (*changed && (*changed)->empty()) return erase();
  if (!*changed && !old) return {};
  const auto& plaintext = *changed ? **changed : old->plaintext;
  if (const auto written = replace(plaintext.reveal(), *std::move(obsolete)); !written) return written;
  if (!old) return {};
  if (const auto removed = removeIfPresent(files_, old->file); !removed) return fileError(removed.error());
  return {};
}

SecureResult<void> SecureLocalFile::replace(std::span<const std::uint8_t> plaintext,
                                            std::vector<std::string> obsolete) {
  if (base64::encodedSize(plaintext.size()) + largestEnvelopeOverhead > largestFile) return fileError(EFBIG);
  const auto previous = keyIDOf(fileURL_);
  if (!previous) return std::unexpected(previous.error());

  std::string fresh;
  const auto announce = [&](const std::string& identifier) -> SecureResult<void> {
    auto identifiers = obsolete;
    if (*previous) identifiers.push_back(**previous);
    identifiers.push_back(identifier);
    if (const auto saved = pending_.save({std::move(identifiers)}); !saved) return fileError(saved.error());
    fresh = identifier;
    return {};
  };
  const auto key = keyStore_.createKey(announce);
  SecureResult<void> result;
  if (key) {
    result = seal(*key, plaintext);
  } else {
    result = std::unexpected(key.error());
  }

  if (!result) {
    if (fresh.empty()) return result;  // no key was made
    const auto found = keyIDOf(fileURL_);
    // Both keys stay until it is known which file the disk holds: the next operation looks again.
    if (!found || *found == fresh) return result;
    obsolete.push_back(fresh);
  } else if (*previous && *previous != fresh) {
    obsolete.push_back(**previous);
  }
  deleteKeys(obsolete);
  return result;
}

SecureResult<void> SecureLocalFile::seal(const LocalEncryptionKeyStore::NamedKey& key,
                                         std::span<const std::uint8_t> plaintext) {
  auto box = crypto::sealAes256Gcm(key.key, plaintext);
  if (!box) return std::unexpected(Error(Error::Case::invalidEnvelope));
  const SecureLocalEnvelope envelope{SecureLocalEnvelope::currentVersion, key.identifier, std::move(*box)};
  const auto text = envelope.encode();
  const auto prepare = [this](const std::filesystem::path& copy) {
    auto restricted = setFilePermissions_(copy);
    if (restricted) files_.excludeFromBackups(copy);
    return restricted;
  };
  const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  const auto written = writeAtomically_(bytes, fileURL_, prepare);
  if (!written) return fileError(written.error());
  return {};
}

void SecureLocalFile::deleteKeys(const std::vector<std::string>& identifiers) {
  PendingKeys::Contents left;
  for (const auto& identifier : identifiers) {
    if (!keyStore_.deleteKey(identifier)) left.identifiers.push_back(identifier);
  }
  // Failing here leaves more names than needed: the next operation finds their keys gone.
  (void)(left.identifiers.empty() ? pending_.clear() : pending_.save(left));
}

SecureResult<std::vector<std::string>> SecureLocalFile::finishInterrupted() {
  const auto pending = pending_.load();
  if (!pending) return fileError(pending.error());
  if (pending->erasing) {
    if (const auto erased = erase(); !erased) return std::unexpected(erased.error());
    return std::vector<std::string>{};
  }
  if (const auto removed = removeIfPresent(files_, temporaryPath(fileURL_)); !removed) {
    return fileError(removed.error());
  }
  if (pending->identifiers.empty()) {
    if (const auto cleared = pending_.clear(); !cleared) return fileError(cleared.error());
    return std::vector<std::string>{};
  }
  const auto current = keyIDOf(fileURL_);
  if (!current) return std::unexpected(current.error());
  // A file that came into its place by a write that failed at its end may not be on the disk yet.
  if (const auto settled = files_.synchronizeFolder(fileURL_.parent_path()); !settled)
    return fileError(settled.error());
  auto obsolete = pending->identifiers;
  if (*current) std::erase(obsolete, **current);
  deleteKeys(obsolete);
  const auto left = pending_.load();
  if (!left) return fileError(left.error());
  return left->identifiers;
}

void SecureLocalFile::finishInterruptedIfAny() {
  const auto pending = pending_.exists();
  const auto copy = files_.exists(temporaryPath(fileURL_));
  if (!pending.value_or(true) && !copy.value_or(true)) return;
  // A live writer holds the lock and has such files too.
  const auto lock = files_.lock(lockPath(fileURL_), Duration::zero());
  if (!lock) return;
  (void)finishInterrupted();  // what cannot be done now waits for the next operation
}

SecureResult<void> SecureLocalFile::deleteCryptographically() {
  const auto folder = files_.exists(fileURL_.parent_path());
  if (!folder) return fileError(folder.error());
  if (!*folder) return removeAll(legacyFileURLs_);
  const auto lock = this->lock();
  if (!lock) return std::unexpected(lock.error());
  return erase();
}

SecureResult<void> SecureLocalFile::erase() {
  const auto before = pending_.load().value_or(PendingKeys::Contents{});
  const auto current = keyIDOf(fileURL_);
  // A damaged file does not name its key: it goes all the same, and the caller is told. A file that cannot be
  // read just now stays.
  if (!current && !current.error().isDamage()) return std::unexpected(current.error());

  PendingKeys::Contents pending{before.identifiers, true};
  if (current && *current) {
    pending.identifiers.push_back(**current);
    (void)pending_.save(
        pending);  // without it a crash leaves a file that nobody can open, which is no secret
    if (const auto deleted = keyStore_.deleteKey(**current); !deleted) {
      (void)(before.identifiers.empty() && !before.erasing ? pending_.clear() : pending_.save(before));
      return deleted;
    }
  } else {
    (void)pending_.save(pending);
  }

  auto doomed = filesSetAside(files_, fileURL_).value_or(std::vector<std::filesystem::path>{});
  for (const auto& file : doomed) {
    const auto keyID = keyIDOf(file);
    if (keyID && *keyID) pending.identifiers.push_back(**keyID);
  }
  doomed.push_back(temporaryPath(fileURL_));
  doomed.push_back(fileURL_);
  doomed.insert(doomed.end(), legacyFileURLs_.begin(), legacyFileURLs_.end());

  SecureResult<void> result;
  if (!current) result = std::unexpected(current.error());
  PendingKeys::Contents left;
  for (const auto& identifier : pending.identifiers) {
    const auto deleted = keyStore_.deleteKey(identifier);
    if (deleted) continue;
    left.identifiers.push_back(identifier);
    if (result) result = deleted;
  }
  const auto removed = removeAll(doomed);
  if (!removed) {
    left.erasing = true;
    if (result) result = removed;
  }
  (void)(left.identifiers.empty() && !left.erasing ? pending_.clear() : pending_.save(left));
  return result;
}

SecureResult<void> SecureLocalFile::removeAll(const std::vector<std::filesystem::path>& doomed) {
  SecureResult<void> result;
  for (const auto& file : doomed) {
    const auto removed = removeIfPresent(files_, file);
    if (!removed && result) result = fileError(removed.error());
  }
  return result;
}

void SecureLocalFile::hardenExisting() {
  const auto present = files_.exists(fileURL_);
  // A refusal shows when the file is read or written.
  if (present && *present) (void)setFilePermissions_(fileURL_);
}

}  // namespace murmel
