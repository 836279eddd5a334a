#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace murmel {

/// Decides whether a worker executable may be started: it must lie inside the application's resources folder
/// and be signed by the application's own team. Knows nothing of how signatures are checked.
class ExecutableRuntimePolicy {
 public:
  /// The team that signed the file, if its signature is valid.
  using TeamLookup = std::function<std::optional<std::string>(const std::filesystem::path&)>;

  /// `applicationTeam` is absent in a development build, which accepts any signer.
  ExecutableRuntimePolicy(std::filesystem::path resourcesDirectory,
                          std::optional<std::string> applicationTeam, TeamLookup teamOf);

  /// False for a path that leaves the folder, through ".." or a link, and for one that does not exist.
  [[nodiscard]] bool mayExecute(const std::filesystem::path& executable) const;

 private:
  std::filesystem::path resourcesDirectory_;
  std::optional<std::string> applicationTeam_;
  TeamLookup teamOf_;
};

}  // namespace murmel
