#include "Workers/Updater/InstallationFolder.h"

#include "MRMUpdatePolicy/UpdateRoad.h"
#include "Product/InformationDictionary.h"
#include "Workers/Updater/ReleaseArchive.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace murmel::updater {

namespace {

constexpr const char* newFolder = ".new";
constexpr const char* previousFolder = "previous";
constexpr mode_t treeMode = 0755;
constexpr const char* anotherThing = "The new version is not what the list of updates says.";

std::unexpected<std::string> failure(std::string_view doing) {
  return std::unexpected(downloader::FileError::from(doing, errno).message);
}

std::optional<std::string> told(const std::filesystem::path& tree, std::string_view key) {
  const auto information = InformationDictionary::read(tree / "lib" / "murmel" / "Info.json");
  return information ? information->string(key) : std::nullopt;
}

bool exists(int folder, const char* name) {
  struct stat status {};
  return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0;
}

}  // namespace

std::expected<InstallationFolder, std::string> InstallationFolder::open(const std::filesystem::path& root) {
  auto folder = downloader::OwnFolder::open(root);
  if (!folder) return std::unexpected(folder.error().message);
  struct stat status {};
  const bool isThere = ::fstatat(folder->descriptor(), currentFolder, &status, AT_SYMLINK_NOFOLLOW) == 0;
  if (!isThere || !S_ISDIR(status.st_mode))
    return std::unexpected("There is no installation of this app in " + root.string() + ".");
  return InstallationFolder(root, *std::move(folder));
}

void InstallationFolder::removeTree(const char* name) const {
  std::error_code ignored;  // what is left over is found by the step that needs the name
  std::filesystem::remove_all(root_ / name, ignored);
}

std::expected<void, std::string> InstallationFolder::unpack(const UpdateRelease& release, int archive) const {
  const auto copy = verifiedCopy(archive, folder_.descriptor(), release.size, release.sha256);
  if (!copy) return std::unexpected(copy.error());
  removeTree(newFolder);
  if (::mkdirat(folder_.descriptor(), newFolder, treeMode) != 0) return failure("unpack the new version");
  const UniqueDescriptor tree(
      ::openat(folder_.descriptor(), newFolder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!tree) return failure("unpack the new version");
  auto done = unpackArchive(copy->get(), tree.get());
  if (done) done = looksRight(release);
  // All of it reaches the disk before anything points to it.
  if (done && ::syncfs(tree.get()) != 0) done = failure("unpack the new version");
  if (!done) removeTree(newFolder);
  return done;
}

std::expected<void, std::string> InstallationFolder::looksRight(const UpdateRelease& release) const {
  const auto tree = root_ / newFolder;
  const bool isOfTheList = told(tree, "CFBundleVersion") == std::to_string(release.build) &&
                           told(tree, "CFBundleShortVersionString") == release.version &&
                           told(tree, "MRMEdition") == release.edition;
  const bool isOurs = told(tree, "CFBundleIdentifier") == told(root_ / currentFolder, "CFBundleIdentifier");
  std::error_code ignored;
  const auto program = std::filesystem::symlink_status(tree / "bin" / "murmel", ignored);
  if (!isOfTheList || !isOurs || !std::filesystem::is_regular_file(program))
    return std::unexpected(anotherThing);
  return {};
}

std::expected<void, std::string> InstallationFolder::exchange() const {
  const int folder = folder_.descriptor();
  if (!exists(folder, newFolder)) return std::unexpected("There is no new version to install.");
  removeTree(previousFolder);
  if (::renameat2(folder, newFolder, folder, currentFolder, RENAME_EXCHANGE) != 0)
    return failure("install the new version");
  // A name that could not be freed costs the way back only.
  (void)::renameat2(folder, newFolder, folder, previousFolder, RENAME_NOREPLACE);
  if (::fsync(folder) != 0) return failure("install the new version");
  return {};
}

std::expected<void, std::string> InstallationFolder::restore() const {
  const int folder = folder_.descriptor();
  // Between the two renames of an exchange the version before has the other name.
  const char* const before = exists(folder, previousFolder) ? previousFolder : newFolder;
  if (!exists(folder, before)) return std::unexpected("The version before is not there any more.");
  if (::renameat2(folder, before, folder, currentFolder, RENAME_EXCHANGE) != 0)
    return failure("bring back the version before");
  if (::fsync(folder) != 0) return failure("bring back the version before");
  removeTree(before);
  return {};
}

}  // namespace murmel::updater
