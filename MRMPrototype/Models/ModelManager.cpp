#include "Models/ModelManager.h"

#include "Foundation/Crypto.h"
#include "Foundation/UniqueDescriptor.h"

#include <cerrno>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace murmel {

namespace {

constexpr std::size_t readSize = 256 * 1'024;

std::int64_t nanoseconds(const timespec& time) {
  return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

/// A file while its contents are read: identity and contents are those of the same open file.
class ModelManager::OpenedFile {
 public:
  explicit OpenedFile(const std::filesystem::path& path)
      // Not blocking: a FIFO in its place must not stop us.
      : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}

  /// Nothing when it is not there or no regular file.
  [[nodiscard]] std::optional<FileIdentity> identity() const {
    struct stat status {};
    if (!descriptor_ || ::fstat(descriptor_.get(), &status) != 0 || !S_ISREG(status.st_mode))
      return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size),
                        nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
  }

  /// Nothing when it cannot be read, or when `stopping` becomes true.
  [[nodiscard]] std::optional<std::string> sha256(const std::atomic<bool>& stopping) const {
    crypto::Sha256 hash;
    std::vector<std::uint8_t> buffer(readSize);
    while (!stopping) {
      const auto count = ::read(descriptor_.get(), buffer.data(), buffer.size());
      if (count == 0) return crypto::hexadecimal(hash.finish());
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return std::nullopt;
      hash.update({buffer.data(), static_cast<std::size_t>(count)});
    }
    return std::nullopt;
  }

 private:
  UniqueDescriptor descriptor_;
};

ModelManager::ModelManager(Executor& executor, std::filesystem::path root,
                           std::span<const SpeechModelFile> files)
    : executor_(executor), root_(std::move(root)), files_(files), queue_(executor, "model-manager") {}

ModelManager::~ModelManager() {
  stopping_ = true;
}

std::vector<ModelManager::FileIdentity> ModelManager::look(const std::filesystem::path& folder) const {
  std::vector<FileIdentity> seen;
  for (const auto& file : files_) {
    const auto identity = OpenedFile(folder / file.path).identity();
    if (!identity || identity->size != file.size) return {};
    seen.push_back(*identity);
  }
  return seen;
}

bool ModelManager::requiredItemsPresent(const std::filesystem::path& folder) const {
  return !look(folder).empty();
}

bool ModelManager::isKnown(const Verified& seen) const {
  const std::lock_guard lock(mutex_);
  return !seen.files.empty() && seen == verified_;
}

bool ModelManager::verifyArtifacts(const std::filesystem::path& folder) const {
  if (isKnown({folder, look(folder)})) return true;
  Verified verified{folder, {}};
  for (const auto& file : files_) {
    const OpenedFile opened(folder / file.path);
    const auto before = opened.identity();
    if (!before || before->size != file.size) return false;
    if (opened.sha256(stopping_) != file.sha256) return false;
    // Written to while it was read: what was hashed may never have been there as a whole.
    if (opened.identity() != before) return false;
    verified.files.push_back(*before);
  }
  const std::lock_guard lock(mutex_);
  verified_ = std::move(verified);
  return true;
}

void ModelManager::validate() {
  const auto validation = ++validation_;
  Verified seen{root_, look(root_)};
  if (seen.files.empty()) return setState(SpeechModelState::missing);
  if (isKnown(seen)) return setState(SpeechModelState::ready);
  setState(SpeechModelState::verifying);
  queue_.enqueue([this, validation, alive = std::weak_ptr(alive_)] {
    const bool isValid = verifyArtifacts(root_);
    executor_.post([this, validation, isValid, alive] {
      if (alive.expired() || validation != validation_) return;
      setState(isValid ? SpeechModelState::ready : SpeechModelState::missing);
    });
  });
}

void ModelManager::setState(SpeechModelState state) {
  if (std::exchange(state_, state) == state) return;
  // Posted, so that nobody is called back from inside `validate`.
  executor_.post([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) inventoryChanged_.emit();
  });
}

Registration ModelManager::onInventoryChange(std::function<void()> handler) {
  return inventoryChanged_.subscribe(std::move(handler));
}

}  // namespace murmel
