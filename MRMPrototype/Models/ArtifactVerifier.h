#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace murmel {

/// What tells one state of a file from another without reading it. The time of status change cannot be set
/// back by whoever writes to the file.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t size = 0;     ///< bytes
  std::int64_t modified = 0;  ///< ns
  std::int64_t changed = 0;   ///< ns

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// A file of a model and what it must be.
struct ModelArtifact {
  std::filesystem::path path;
  std::optional<std::uint64_t> size;  ///< bytes, where it is known
  std::string_view sha256;            ///< lower-case hexadecimal; must outlive the artifact
};

/// Knows which files are what they must be: contents are read once, and again only after a file has changed.
/// Thread-safe.
class ArtifactVerifier {
 public:
  enum class Finding {
    missing,   ///< no regular file there (a link is none), or it may not be read
    wrong,     ///< of another size, or it was read and is something else
    unknown,   ///< it must be read to tell
    verified,  ///< it was read, and has not changed since
  };

  /// `memory`: a file in which what was read is remembered beyond this process, shared with other processes;
  /// empty for none. A memory that is damaged or cannot be written only makes files be read again.
  explicit ArtifactVerifier(std::filesystem::path memory = {});

  /// Without reading the contents.
  [[nodiscard]] Finding look(const ModelArtifact& artifact) const;
  /// Reads what is not known; what another thread is reading is waited for. Ends early, with false, when
  /// `stopping` becomes true.
  bool verify(const ModelArtifact& artifact, const std::atomic<bool>& stopping);
  /// Reads it, known or not.
  bool verifyAgain(const ModelArtifact& artifact, const std::atomic<bool>& stopping);
  /// Forgets files that are gone, in the memory too, so that other processes notice.
  void forgetMissing();

 private:
  struct Known {
    FileIdentity identity;
    std::string sha256;

    friend bool operator==(const Known&, const Known&) = default;
  };
  using Memory = std::map<std::string, Known>;

  class OpenedFile;
  static Memory read(const std::filesystem::path& file);
  [[nodiscard]] UniqueDescriptor lockMemory() const;
  void write();
  void refresh() const;
  void remember(const std::string& path, Known known);

  const std::filesystem::path memoryFile_;
  std::mutex writing_;  ///< held while the memory is written; never waited for with the other one held
  mutable std::mutex mutex_;
  std::condition_variable readingEnded_;
  std::set<std::string> reading_;                   ///< guarded
  mutable Memory known_;                            ///< what every file that was read contains; guarded
  mutable std::optional<FileIdentity> memoryRead_;  ///< the state of the memory file that is in `known_`
};

}  // namespace murmel
