#include "Shell/Installation.h"

#include "Platform/Linux/Process/SignedExecutableManifest.h"
#include "Product/MRMAppIdentity.h"

#include <utility>

#include <fmt/core.h>

namespace murmel {

namespace {

/// Of a build that is signed, the team; the word that is no team's when it was changed since, so that it
/// starts nothing. A release knows who signs it: nobody can sign it anew. The application's own manifest lies
/// among the resources, not in a folder of commands.
std::optional<std::string> ownTeam(const ApplicationFolders& folders, std::string_view releaseKey) {
  constexpr const char* nobody = "changed";
  const auto manifest = folders.resources / "murmel.manifest";
  std::error_code failure;
  if (releaseKey.empty() && !std::filesystem::exists(manifest, failure)) return std::nullopt;
  const auto team = SignedExecutableManifest::teamOf(folders.executable, manifest).value_or(nobody);
  return releaseKey.empty() || team == releaseKey ? team : nobody;
}

}  // namespace

Installation Installation::from(const InformationDictionary& info, ApplicationFolders folders,
                                Environment environment, std::string_view releaseKey) {
  ExecutableRuntimePolicy policy(
      folders.resources, ownTeam(folders, releaseKey),
      [](const std::filesystem::path& file) { return SignedExecutableManifest::teamOf(file); });
  return {
      .build = MRMBuildIdentity::from(info),
      .identifier = MRMAppIdentity::applicationIdentifier(info),
      .edition = distributionEdition(info),
      .channel = distributionChannel(info),
      .downloaderServiceName = MRMAppIdentity::downloaderServiceName(info),
      .tipJar = info.string("MRMTipJarURL").value_or(""),
      .environment = std::move(environment),
      .folders = std::move(folders),
      .policy = std::move(policy),
  };
}

std::expected<Installation, std::string> Installation::read(Environment environment) {
  auto folders = ApplicationFolders::locate(environment);
  if (!folders) return std::unexpected(folders.error());
  const auto info = informationOfThisBuild();
  if (!info) return std::unexpected("This installation is damaged. " + info.error());
  return from(*info, *std::move(folders), std::move(environment));
}

std::string versionLine(const MRMBuildIdentity& build) {
  return fmt::format("{} {} ({}), {}", build.displayName, build.version, build.buildNumber,
                     build.editionName);
}

std::expected<InformationDictionary, std::string> informationOfThisBuild() {
  const auto resources = ApplicationFolders::resourcesOf(ApplicationFolders::thisExecutable());
  return InformationDictionary::read(resources / "Info.json");
}

}  // namespace murmel
