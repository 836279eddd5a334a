#include "Platform/Linux/Process/SignedExecutableManifest.h"
#include "Product/MRMBuildIdentity.h"
#include "Shell/Checks/Checks.h"

#include <filesystem>
#include <string>

#include <fmt/core.h>

namespace murmel {

namespace {

/// What of a signed installation is not as it was signed, as a sentence; empty where all of it is, and in a
/// build that is not signed. Reads every program, also those that nothing has asked for yet.
std::string damage(const Installation& installation) {
  const auto& resources = installation.folders.resources;
  const auto manifest = resources / "murmel.manifest";
  std::error_code failure;
  if (!std::filesystem::exists(manifest, failure)) return {};
  if (!SignedExecutableManifest::teamOf(installation.folders.executable, manifest))
    return "murmel itself is not as its makers signed it, and starts none of its workers.";
  std::string changed;
  const auto add = [&changed](const std::filesystem::path& file) {
    changed += (changed.empty() ? "" : ", ") + file.filename().string();
  };
  for (const auto* const folder : {"Workers", "Runtime"}) {
    constexpr auto options = std::filesystem::directory_options::skip_permission_denied;
    std::filesystem::recursive_directory_iterator entry(resources / folder, options, failure);
    for (; !failure && entry != end(entry); entry.increment(failure)) {
      std::error_code gone;
      if (!entry->is_regular_file(gone) || entry->path().extension() == ".manifest") continue;
      if (!installation.policy.mayExecute(entry->path())) add(entry->path());
    }
    if (failure && failure != std::errc::no_such_file_or_directory) add(folder);
  }
  return changed.empty() ? changed
                         : fmt::format("Not as their makers signed them, and not used: {}.", changed);
}

}  // namespace

Task<CheckResult> checkEdition(CheckedServices services) {
  auto reading = services.queue.run([&installation = services.installation] { return damage(installation); });
  const auto damaged = co_await reading;
  if (!damaged.empty()) co_return CheckResult{CheckState::broken, damaged + " Install Murmel again."};
  co_return CheckResult{CheckState::works, versionLine(services.installation.build) + ". " +
                                               std::string(editionTagline(services.installation.edition)) +
                                               "."};
}

}  // namespace murmel
