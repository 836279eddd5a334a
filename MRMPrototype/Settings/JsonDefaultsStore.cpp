#include "Settings/JsonDefaultsStore.h"

#include "Storage/FileAccess.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include <fmt/core.h>

namespace murmel {

namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t largestFile = 16 << 20;
// Another writer holds the lock for some milliseconds; whoever holds it longer is stopped.
constexpr Duration lockLimit = 500ms;

std::filesystem::path goodCopy(const std::filesystem::path& file) {
  auto copy = file;
  copy += ".good";
  return copy;
}

std::string reason(int errorNumber) {
  return std::generic_category().message(errorNumber);
}

}  // namespace

JsonDefaultsStore::JsonDefaultsStore(FileSystem& files, std::filesystem::path file)
    : files_(files), given_(std::move(file)), file_(files_.target(given_)) {
  const auto read = readFile();
  if (read == Read::document) keepAsGood();
  if (read != Read::damaged) return;
  auto good = lastGood();
  if (good) document_ = *std::move(good);
}

bool JsonDefaultsStore::reload() {
  const auto before = document_.text();
  file_ = files_.target(given_);
  const auto read = readFile();
  if (read == Read::document) keepAsGood();
  if (read == Read::absent) document_ = {};
  applyUnstored();
  return document_.text() != before;
}

std::vector<std::filesystem::path> JsonDefaultsStore::watchedFiles() const {
  if (file_ == given_) return {given_};
  return {given_, file_};
}

std::optional<DefaultsValue> JsonDefaultsStore::value(std::string_view key) const {
  return document_.value(key);
}

bool JsonDefaultsStore::contains(std::string_view key) const {
  return document_.contains(key);
}

void JsonDefaultsStore::set(std::string_view key, DefaultsValue value) {
  change(key, std::move(value));
}

void JsonDefaultsStore::remove(std::string_view key) {
  change(key, std::nullopt);
}

JsonDefaultsStore::Read JsonDefaultsStore::readFile() {
  const auto bytes = readWholeFile(files_, file_, largestFile);
  if (!bytes) {
    report(fmt::format(
        "The settings file {} cannot be read ({}). It stays as it is; changes are kept in memory.",
        file_.string(), reason(bytes.error())));
    return Read::failed;
  }
  damage_.clear();
  if (!*bytes) return Read::absent;
  auto parsed = DefaultsDocument::parse({reinterpret_cast<const char*>((*bytes)->data()), (*bytes)->size()});
  if (!parsed) {
    damage_ = parsed.error();
    report(fmt::format("The settings file {} cannot be understood: {}. The last good settings are in force.",
                       given_.string(), damage_));
    return Read::damaged;
  }
  document_ = std::move(*parsed);
  return Read::document;
}

std::optional<DefaultsDocument> JsonDefaultsStore::lastGood() {
  const auto bytes = readWholeFile(files_, goodCopy(given_), largestFile);
  if (!bytes || !*bytes) return std::nullopt;
  auto parsed = DefaultsDocument::parse({reinterpret_cast<const char*>((*bytes)->data()), (*bytes)->size()});
  if (!parsed) return std::nullopt;
  return *std::move(parsed);
}

/// A copy for the day when somebody forgets a comma. Nothing depends on it before, so a failure is none.
void JsonDefaultsStore::keepAsGood() {
  const auto text = document_.text();
  const auto good = lastGood();
  if (good && good->text() == text) return;
  const auto lock = files_.lock(lockPath(goodCopy(given_)), Duration::zero());
  if (!lock) return;
  const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  (void)replaceFile(files_, goodCopy(given_), bytes, {}, Durability::process);
  (void)removeIfPresent(files_, lockPath(goodCopy(given_)));
}

void JsonDefaultsStore::change(std::string_view key, std::optional<DefaultsValue> value) {
  unstored_.insert_or_assign(std::string(key), std::move(value));
  applyUnstored();
  if (const auto made = files_.makeFolders(file_.parent_path()); !made)
    return reportUnwritable("cannot be made", made.error());
  const auto lock = files_.lock(lockPath(file_), lockLimit);
  if (!lock)
    return reportUnwritable(lock.error() == EWOULDBLOCK ? "is in use" : "cannot be written", lock.error());
  (void)store();
}

/// With the lock held.
bool JsonDefaultsStore::store() {
  const auto read = readFile();
  if (read == Read::failed) return false;
  if (read == Read::absent) document_ = {};
  if (read == Read::damaged) {
    const auto aside = setFileAside(files_, file_);
    if (!aside) {
      reportUnwritable("cannot be set aside", aside.error());
      return false;
    }
    report(
        fmt::format("The settings file was damaged ({}). It was set aside as {}.", damage_, aside->string()));
  }
  applyUnstored();
  const auto text = document_.text();
  const auto written =
      replaceFile(files_, file_, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
  if (!written) {
    reportUnwritable("cannot be written", written.error());
    return false;
  }
  unstored_.clear();
  keepAsGood();
  return true;
}

void JsonDefaultsStore::reportUnwritable(std::string_view doing, int error) {
  if (error == EROFS || error == EACCES || error == EPERM) {
    report(fmt::format("The settings file {} is read-only. Changes are kept in memory.", file_.string()));
    return;
  }
  report(fmt::format("The settings file {} {} ({}). Changes are kept in memory.", file_.string(), doing,
                     reason(error)));
}

void JsonDefaultsStore::applyUnstored() {
  for (const auto& [key, value] : unstored_) {
    if (value) {
      document_.set(key, *value);
    } else {
      document_.remove(key);
    }
  }
}

void JsonDefaultsStore::report(std::string message) {
  if (std::ranges::find(messages_, message) != messages_.end()) return;
  messages_.push_back(message);
  messageAdded_.emit(std::move(message));
}

}  // namespace murmel
