#include "LocalModels/QwenAPIKeyFile.h"

#include "Foundation/Crypto/Crypto.h"
#include "Foundation/UniqueDescriptor.h"
#include "Foundation/Uuid.h"
#include "Foundation/WriteAll.h"

#include <span>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace murmel {

namespace {

bool isPrivateFolder(const std::filesystem::path& directory) {
  struct stat status {};
  constexpr mode_t othersRights = S_IRWXG | S_IRWXO;
  return ::lstat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && (status.st_mode & othersRights) == 0;
}

bool hasSize(int file, std::size_t size) {
  struct stat status {};
  return ::fstat(file, &status) == 0 && status.st_size == static_cast<off_t>(size);
}

}  // namespace

SecretBytes QwenAPIKeyFile::makeToken() {
  SecretBytes random(tokenSize / 2);
  if (!crypto::fillRandom(random.reveal())) return {};
  // By hand: a string would keep a second copy of the token in ordinary memory.
  SecretBytes token(tokenSize);
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr unsigned lowHalf = 0xF;
  for (std::size_t index = 0; index < random.size(); ++index) {
    const unsigned byte = random.reveal()[index];
    token.reveal()[2 * index] = static_cast<std::uint8_t>(digits[byte >> 4U]);
    token.reveal()[2 * index + 1] = static_cast<std::uint8_t>(digits[byte & lowHalf]);
  }
  return token;
}

// By system calls and not through FileSystem, whose subject is a file that must survive: this one lives for a
// moment, and all that counts is who may enter its folder and that nobody's link is followed on the way.
std::expected<QwenAPIKeyFile, std::string> QwenAPIKeyFile::create(const SecretBytes& token,
                                                                  const std::filesystem::path& directory) {
  const std::unexpected<std::string> unavailable("protected API key file unavailable");
  constexpr mode_t folderMode = 0700;
  constexpr mode_t fileMode = 0600;
  if (token.size() != tokenSize) return unavailable;
  ::mkdir(directory.c_str(), folderMode);  // It may be there already; what counts is what it is.
  if (!isPrivateFolder(directory)) return unavailable;
  QwenAPIKeyFile created(directory / Uuid::random().text());
  const UniqueDescriptor file(
      ::open(created.path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileMode));
  if (!file) {
    created.path_.clear();  // not ours
    return unavailable;
  }
  if (!writeAll(file.get(), token.reveal()) || !hasSize(file.get(), tokenSize)) return unavailable;
  return created;
}

QwenAPIKeyFile::QwenAPIKeyFile(QwenAPIKeyFile&& other) noexcept : path_(std::exchange(other.path_, {})) {}

void QwenAPIKeyFile::remove() {
  const auto path = std::exchange(path_, {});
  if (!path.empty()) ::unlink(path.c_str());
}

}  // namespace murmel
