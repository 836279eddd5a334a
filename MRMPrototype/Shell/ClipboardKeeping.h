#pragma once

#include "Platform/Linux/Clipboard/ClipboardKeeperProcess.h"
#include "Shell/DesktopServices.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

namespace murmel {

/// The process that keeps the clipboard, which is given these variables of the environment and no others:
/// what leads to the display server.
inline std::unique_ptr<ClipboardKeeperProcess> clipboardKeeper(const DesktopParameters& parameters,
                                                               std::initializer_list<const char*> variables) {
  const auto& installation = parameters.installation;
  ClipboardKeeperProcess::Configuration configuration{
      .executable = installation.folders.resources / "Workers" / ClipboardKeeperProcess::workerName,
      .mayExecute = [policy = installation.policy](
                        const std::filesystem::path& executable) { return policy.mayExecute(executable); },
      .environment = {},
  };
  for (const char* name : variables) {
    if (const auto value = installation.environment.value(name))
      configuration.environment.push_back(std::string(name) + "=" + *value);
  }
  return std::make_unique<ClipboardKeeperProcess>(parameters.process.launcher, std::move(configuration));
}

}  // namespace murmel
