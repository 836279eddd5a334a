#pragma once

#include "Product/ExecutableRuntimePolicy.h"
#include "Product/MRMBuildIdentity.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Where the inference server's executable is, and whether it may be started.
struct LanguageModelRuntime {
  /// In the resources folder; the number is that of the server's build.
  static constexpr std::string_view relativePath = "Runtime/llama-b10448/llama-server";
  /// A development build looks here first: the absolute path of an executable.
  static constexpr const char* environmentVariable = "MURMEL_LLAMA_SERVER";

  std::filesystem::path executable;
  std::function<bool(const std::filesystem::path&)> mayExecute;

  /// `override` is the environment variable's value; every edition but the development build ignores it.
  static LanguageModelRuntime locate(const std::filesystem::path& resourcesDirectory,
                                     DistributionEdition edition, ExecutableRuntimePolicy policy,
                                     const std::optional<std::string>& override);
  /// The executable, when it is there.
  [[nodiscard]] std::optional<std::filesystem::path> installedExecutable() const;
};

}  // namespace murmel
