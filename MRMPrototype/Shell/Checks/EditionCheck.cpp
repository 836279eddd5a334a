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
  for (const auto* const folder : {"Workers", "Runtime"}) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             resources / folder, std::filesystem::directory_options::skip_permission_denied, failure)) {
      if (!entry.is_regular_file(failure) || entry.path().extension() == ".manifest") continue;
      if (installation.policy.mayExecute(entry.path())) continue;
      changed += (changed.empty() ? "" : ", ") + entry.path().filename().string();
    }
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
