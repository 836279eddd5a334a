#include "Models/ArtifactVerifier.h"

#include "Foundation/Crypto/Crypto.h"
#include "Foundation/Json/Json.h"
#include "Foundation/UniqueDescriptor.h"

#include <cerrno>
#include <chrono>
#include <fstream>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace murmel {

namespace {

constexpr std::size_t readSize = 1 << 20;
/// Whoever writes holds the lock for some milliseconds.
constexpr auto lockLimit = std::chrono::seconds(2);
/// How often whoever waits for another thread's reading looks whether it shall stop.
constexpr auto stopInterval = std::chrono::milliseconds(50);
constexpr auto lockRetryInterval = std::chrono::milliseconds(2);

std::int64_t nanoseconds(const timespec& time) {
  return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

/// A file while its contents are read: identity and contents are those of the same open file.
class ArtifactVerifier::OpenedFile {
 public:
  explicit OpenedFile(const std::filesystem::path& path)
      // Not blocking: a FIFO in its place must not stop us. Not through a link: what it points to may belong
      // to anybody.
      : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY)) {}

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
    ::posix_fadvise(descriptor_.get(), 0, 0,
                    POSIX_FADV_SEQUENTIAL);  // A hint: without it we are only slower.
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

ArtifactVerifier::ArtifactVerifier(std::filesystem::path memory) : memoryFile_(std::move(memory)) {
  refresh();
}

/// Takes over what other processes have found out since. With the mutex held, or before anybody has it.
void ArtifactVerifier::refresh() const {
  if (memoryFile_.empty()) return;
  const auto identity = OpenedFile(memoryFile_).identity();
  if (identity == memoryRead_) return;
  memoryRead_ = identity;
  auto fresh = read(memoryFile_);
  for (auto& [path, known] : fresh) known_.insert_or_assign(path, std::move(known));
}

ArtifactVerifier::Finding ArtifactVerifier::look(const ModelArtifact& artifact) const {
  const auto identity = OpenedFile(artifact.path).identity();
  if (!identity) return Finding::missing;
  if (artifact.size && *artifact.size != identity->size) return Finding::wrong;
  const std::lock_guard lock(mutex_);
  const auto find = [&] {
    const auto found = known_.find(artifact.path.native());
    return found != known_.end() && found->second.identity == *identity ? found : known_.end();
  };
  auto found = find();
  if (found == known_.end()) {
    refresh();
    found = find();
  }
  if (found == known_.end()) return Finding::unknown;
  return found->second.sha256 == artifact.sha256 ? Finding::verified : Finding::wrong;
}

bool ArtifactVerifier::verify(const ModelArtifact& artifact, const std::atomic<bool>& stopping) {
  const auto& path = artifact.path.native();
  {
    std::unique_lock lock(mutex_);
    while (reading_.contains(path) && !stopping) readingEnded_.wait_for(lock, stopInterval);
    reading_.insert(path);
  }
  const auto finding = look(artifact);
  const bool isRight =
      finding == Finding::unknown ? verifyAgain(artifact, stopping) : finding == Finding::verified;
  {
    const std::lock_guard lock(mutex_);
    reading_.erase(path);
  }
  readingEnded_.notify_all();
  return isRight;
}

bool ArtifactVerifier::verifyAgain(const ModelArtifact& artifact, const std::atomic<bool>& stopping) {
  const OpenedFile opened(artifact.path);
  const auto before = opened.identity();
  if (!before || (artifact.size && *artifact.size != before->size)) return false;
  const auto digest = opened.sha256(stopping);
  // Written to while it was read: what was hashed may never have been there as a whole.
  if (!digest || opened.identity() != before) return false;
  remember(artifact.path.native(), {*before, *digest});
  return *digest == artifact.sha256;
}

void ArtifactVerifier::remember(const std::string& path, Known known) {
  {
    const std::lock_guard lock(mutex_);
    known_.insert_or_assign(path, std::move(known));
  }
  write();
}

void ArtifactVerifier::forgetMissing() {
  write();
}

/// The lock of the memory, among processes. Nothing when it cannot be had.
UniqueDescriptor ArtifactVerifier::lockMemory() const {
  const auto file = memoryFile_.native() + ".lock";
  const auto deadline = std::chrono::steady_clock::now() + lockLimit;
  while (std::chrono::steady_clock::now() < deadline) {
    UniqueDescriptor lock(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (!lock) return {};
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) == 0) {
      // Whoever emptied the store has removed the lock's file while we were waiting for it.
      struct stat held {};
      if (::fstat(lock.get(), &held) == 0 && held.st_nlink > 0) return lock;
    }
    std::this_thread::sleep_for(lockRetryInterval);
  }
  return {};
}

ArtifactVerifier::Memory ArtifactVerifier::read(const std::filesystem::path& file) {
  Memory memory;
  if (file.empty()) return memory;
  std::ifstream stream(file);
  const auto object = parsedJson(std::string(std::istreambuf_iterator<char>(stream), {}));
  for (const auto& [path, entry] : object.members()) {
    const auto device = entry["device"].unsignedInteger();
    const auto inode = entry["inode"].unsignedInteger();
    const auto size = entry["size"].unsignedInteger();
    const auto modified = entry["modified"].integer();
    const auto changed = entry["changed"].integer();
    auto sha256 = entry["sha256"].text();
    // Of an entry that we did not write the file is read again.
    if (device && inode && size && modified && changed && sha256)
      memory[path] = {{*device, *inode, *size, *modified, *changed}, *std::move(sha256)};
  }
  return memory;
}

// Not through FileSystem: this is a cache that several programs share. Lost or half written it makes files be
// read again, so that nothing has to reach the disk, and no failing step costs anything but time.
void ArtifactVerifier::write() {
  if (memoryFile_.empty()) return;
  // Not with the mutex that `look` needs: the main thread must not wait for a disk or another process.
  const std::lock_guard writing(writing_);
  Memory ours;
  {
    const std::lock_guard lock(mutex_);
    ours = known_;
  }
  std::error_code error;
  if (ours.empty() && !std::filesystem::exists(memoryFile_, error)) return;
  // Another process of ours may be at the same: without the lock one would forget what the other has found.
  const auto lock = lockMemory();
  if (!lock) return;
  auto merged = read(memoryFile_);
  for (const auto& [path, known] : ours) merged.insert_or_assign(path, known);
  auto object = Json::object();
  for (const auto& [path, known] : merged) {
    if (OpenedFile(path).identity() != known.identity) continue;
    object[path] = Json{{"device", known.identity.device},   {"inode", known.identity.inode},
                        {"size", known.identity.size},       {"modified", known.identity.modified},
                        {"changed", known.identity.changed}, {"sha256", known.sha256}};
  }
  if (object.members().empty()) {  // a store that holds nothing is left empty
    std::filesystem::remove(memoryFile_, error);
    std::filesystem::remove(memoryFile_.native() + ".lock", error);
    return;
  }
  const auto temporary = memoryFile_.native() + ".new";
  constexpr int indentation = 1;
  {
    std::filesystem::remove(temporary, error);  // what a killed process left, or somebody's link
    std::ofstream stream(temporary, std::ios::trunc);
    stream << jsonText(object, JsonCharacters::ascii, indentation);
    if (!stream.flush()) {
      std::filesystem::remove(temporary, error);
      return;
    }
  }
  std::filesystem::rename(temporary, memoryFile_, error);
}

}  // namespace murmel
