#include "Foundation/Crypto/SecretBytes.h"
#include "Shell/Checks/Checks.h"

#include <array>
#include <filesystem>
#include <optional>

#include <unistd.h>

namespace murmel {

namespace {

std::optional<SecretStatus> tryKeyRing(SecretStore& secrets, const std::string& service) {
  const std::array<std::uint8_t, 4> bytes{1, 2, 3, 4};
  // Of this process: two that look at the same time do not see each other's.
  const auto account = "probe-" + std::to_string(::getpid());
  const auto added = secrets.add(service, account, SecretBytes(bytes));
  if (!added) return added.error();
  const auto found = secrets.find(service, account);
  const auto removed = secrets.remove(service, account);
  if (!found) return found.error();
  if (!removed) return removed.error();
  return std::nullopt;
}

/// Whether files can be put below a folder that may not exist yet; the one that stands in the way otherwise.
std::optional<std::filesystem::path> obstacle(std::filesystem::path folder) {
  std::error_code failure;
  while (!std::filesystem::exists(folder, failure) && folder.has_relative_path())
    folder = folder.parent_path();
  if (std::filesystem::is_directory(folder, failure) && ::access(folder.c_str(), W_OK | X_OK) == 0)
    return std::nullopt;
  return folder;
}

}  // namespace

Task<CheckResult> checkKeyRing(CheckedServices services) {
  const auto service = services.installation.identifier + ".check";
  auto trying =
      services.queue.run([&secrets = services.secrets, service] { return tryKeyRing(secrets, service); });
  const auto failure = co_await trying;
  if (!failure)
    co_return CheckResult{CheckState::works, "History and vocabulary are sealed with keys in it."};
  if (*failure == secretStatus::interactionNotAllowed) {
    co_return CheckResult{CheckState::limited,
                          "It is locked. History and vocabulary stay in memory until it is unlocked."};
  }
  if (*failure == secretStatus::serviceUnavailable) {
    co_return CheckResult{CheckState::limited,
                          "No secret service answers. History and vocabulary stay in memory only."};
  }
  co_return CheckResult{CheckState::limited, std::string(describe(*failure)) +
                                                 " History and vocabulary stay in memory until then."};
}

Task<CheckResult> checkFolders(CheckedServices services) {
  const auto& folders = services.installation.folders;
  if (const auto folder = obstacle(folders.configuration / "MRM")) {
    co_return CheckResult{CheckState::limited,
                          "Settings cannot be kept: " + folder->string() + " cannot be written to."};
  }
  if (const auto folder = obstacle(folders.data)) {
    co_return CheckResult{CheckState::limited, "History and models cannot be kept: " + folder->string() +
                                                   " cannot be written to."};
  }
  if (const auto folder = obstacle(folders.temporary)) {
    co_return CheckResult{CheckState::broken,
                          "Murmel cannot start: " + folder->string() + " cannot be written to."};
  }
  co_return CheckResult{CheckState::works,
                        "Settings, history and models can be kept in " + folders.data.string() + "."};
}

}  // namespace murmel
