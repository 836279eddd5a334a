#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace murmel {

/// A file system for one child in which there is nothing but what it may use, and a view of the system
/// without other processes and without a network. Planned by the parent; the child builds it from what is
/// here without allocating, in namespaces of its own, which ordinary users may not make everywhere.
class PrivateRoot {
 public:
  struct Isolation {
    bool network = true;
    bool processes = true;  ///< the child must be the only process that it makes
  };
  explicit PrivateRoot(Isolation isolation);

  /// Shows `path` as it is now, with everything below. What is not there, or is visible already, is passed
  /// over. Folders before what lies in them.
  void showReadable(const std::filesystem::path& path) { show(path, Access::read); }
  void showWritable(const std::filesystem::path& path) { show(path, Access::write); }
  void showDevice(const std::filesystem::path& path) { show(path, Access::device); }

  /// For `clone`: the namespaces, in which the child has all rights until it executes.
  [[nodiscard]] unsigned long cloneFlags() const { return cloneFlags_; }
  /// In the child: makes the new root its root. False, with errno, when the system refuses a step.
  [[nodiscard]] bool enter() const;

 private:
  enum class Access { read, write, device };
  struct Step {
    enum class Kind { folder, file, mount } kind;
    std::string path;
    std::string source{};  ///< of a mount, as seen beside the old root
    Access access = Access::read;
  };
  void show(const std::filesystem::path& path, Access access);
  [[nodiscard]] bool take(const Step& step) const;
  [[nodiscard]] bool becomeSomebody() const;

  unsigned long cloneFlags_;
  std::string userMap_;
  std::string groupMap_;
  std::vector<Step> steps_;
};

}  // namespace murmel
