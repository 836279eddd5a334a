#pragma once

#include <expected>
#include <filesystem>
#include <span>
#include <string>

namespace murmel::worker {

/// What the worker is started with: "--model-dir DIR --precision int8", nothing else.
struct WorkerArguments {
  std::filesystem::path modelDirectory;

  /// `arguments` without the program name. The error is a short reason.
  static std::expected<WorkerArguments, std::string> parse(std::span<char* const> arguments);
};

}  // namespace murmel::worker
