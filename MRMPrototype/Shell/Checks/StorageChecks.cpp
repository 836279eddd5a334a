#include "Foundation/Crypto/SecretBytes.h"
#include "Foundation/Text/Text.h"
#include "Shell/Checks/Checks.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <ranges>

#include <fmt/core.h>
#include <sys/resource.h>
#include <unistd.h>

namespace murmel {

namespace {

/// Half a minute of speech that waits for its engine, a long history and all keys.
constexpr std::uint64_t enoughLocked = 4 << 20;

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

CheckResult swapResult(std::string_view swaps,
                       const std::function<std::string(std::string_view device)>& deviceKind,
                       std::uint64_t lockable) {
  std::string onDisk;
  auto lines = std::views::split(swaps, '\n') | std::views::drop(1);  // the first has the titles
  for (const auto part : lines) {
    const auto words = text::words(std::string_view(part.begin(), part.end()));
    if (words.empty()) continue;
    const std::filesystem::path device(words.front());
    const auto name = device.filename().string();
    if (name.starts_with("zram") || deviceKind(name).starts_with("CRYPT-")) continue;
    onDisk = device.string();
  }
  if (onDisk.empty()) return {CheckState::works, "Nothing in memory is written to a disk in the clear."};
  if (lockable == RLIM_INFINITY)
    return {CheckState::works, "Speech, words and keys are locked in memory, out of " + onDisk + "."};
  constexpr double megabyte = 1 << 20;
  const auto room = fmt::format("{:.1f} MB", static_cast<double>(lockable) / megabyte);
  if (lockable >= enoughLocked) {
    return {CheckState::works,
            fmt::format("Up to {} of speech, words and keys are kept out of {}.", room, onDisk)};
  }
  return {CheckState::limited,
          fmt::format("Only {} can be kept out of {}; more of what you say may be written to it. Encrypt the "
                      "swap, or raise the limit of locked memory (LimitMEMLOCK) to 8 MB.",
                      room, onDisk)};
}

Task<CheckResult> checkSwap(CheckedServices /*services*/) {
  const auto contents = [](const std::filesystem::path& file) {
    std::ifstream stream(file);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  };
  rlimit limit{};
  // Whoever may lock as much as they like has no limit.
  const bool isLimited = ::geteuid() != 0 && ::getrlimit(RLIMIT_MEMLOCK, &limit) == 0;
  co_return swapResult(
      contents("/proc/swaps"),
      [&contents](std::string_view device) {
        return contents("/sys/block/" + std::string(device) + "/dm/uuid");
      },
      isLimited ? limit.rlim_cur : RLIM_INFINITY);
}

Task<CheckResult> checkFolders(CheckedServices services) {
  const auto& folders = services.installation.folders;
  if (const auto folder = obstacle(folders.temporary)) {
    co_return CheckResult{CheckState::broken,
                          "Murmel cannot start: " + folder->string() + " cannot be written to."};
  }
  if (const auto folder = obstacle(folders.configuration / "MRM")) {
    co_return CheckResult{CheckState::limited,
                          "Settings cannot be kept: " + folder->string() + " cannot be written to."};
  }
  if (const auto folder = obstacle(folders.data)) {
    co_return CheckResult{CheckState::limited, "History and models cannot be kept: " + folder->string() +
                                                   " cannot be written to."};
  }
  co_return CheckResult{CheckState::works,
                        "Settings, history and models can be kept in " + folders.data.string() + "."};
}

}  // namespace murmel
