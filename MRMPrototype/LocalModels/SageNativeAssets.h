#pragma once

#include "LocalModels/SmartModelFiles.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

namespace murmel {

/// What the Russian corrector is made of: a worker and a runtime library of the application's own, and the
/// files of its model. Main thread.
class SageNativeAssets {
 public:
  /// The executable in the folder "Workers" of the resources.
  static constexpr std::string_view workerName = "mrm-sage-worker";
  /// The library in the resources that the worker loads.
  static constexpr std::string_view runtimePath = "Runtime/onnxruntime/libonnxruntime.so";
  /// A development build looks here first: the absolute path of the library.
  static constexpr const char* runtimeEnvironmentVariable = "MURMEL_ONNX_RUNTIME";

  /// Absolute paths.
  struct Paths {
    std::filesystem::path worker;
    std::filesystem::path runtime;
    std::filesystem::path modelDirectory;
  };

  /// `runtime` is the library that is taken. `files` must outlive the assets.
  SageNativeAssets(const std::filesystem::path& resourcesDirectory, std::filesystem::path runtime,
                   const SmartModelFiles& files);

  /// Everything, when it is there and the model's files are verified.
  [[nodiscard]] std::optional<Paths> paths() const;
  [[nodiscard]] bool isReady() const { return paths().has_value(); }

 private:
  std::filesystem::path worker_;
  std::filesystem::path runtime_;
  const SmartModelFiles& files_;
};

}  // namespace murmel
