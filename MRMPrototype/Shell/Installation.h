#pragma once

#include "Foundation/Environment.h"
#include "MRMUpdatePolicy/ReleaseKey.h"
#include "Product/ExecutableRuntimePolicy.h"
#include "Product/InformationDictionary.h"
#include "Product/MRMBuildIdentity.h"
#include "Shell/ApplicationFolders.h"
#include "Shortcut/ShortcutDistributionPolicy.h"

#include <expected>
#include <optional>
#include <string>

namespace murmel {

/// Everything about this installation that stays the same while it runs. Read once, in `main`.
struct Installation {
  MRMBuildIdentity build;  ///< name, version, build number and edition in words
  std::string identifier;  ///< of the application, in reverse-DNS form
  DistributionEdition edition = DistributionEdition::development;
  MRMDistributionChannel channel = MRMDistributionChannel::direct;
  /// Nothing when this build may not download models.
  std::optional<std::string> downloaderServiceName;
  /// Where a tip can be left; empty where nobody asks for one.
  std::string tipJar;
  Environment environment;
  ApplicationFolders folders;
  ExecutableRuntimePolicy policy;  ///< which workers may be started

  /// The error is one sentence for the user.
  static std::expected<Installation, std::string> read(Environment environment);
  /// The same from parts that are there already. `releaseKey`: the fingerprint of whoever may sign this
  /// build; empty where it belongs to no release.
  static Installation from(const InformationDictionary& info, ApplicationFolders folders,
                           Environment environment, std::string_view releaseKey = releaseKeyFingerprint());
};

/// What `--version` prints; also of an installation that is damaged.
std::string versionLine(const MRMBuildIdentity& build);

/// What the build wrote about itself, if it can be read.
std::expected<InformationDictionary, std::string> informationOfThisBuild();

}  // namespace murmel
