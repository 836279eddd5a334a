#pragma once

#include "Support/ChildProgram.h"
#include "Support/FileBytes.h"
#include "Support/TemporaryFolder.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace murmel::test {

/// One file that the host has, and its line in the downloader's list.
struct HostedFile {
  std::string identifier, sha256;
  std::int64_t bytes;
  std::string folder, file;

  [[nodiscard]] std::filesystem::path place() const { return std::filesystem::path(folder) / file; }
};

struct HostStatistics {
  int requests = 0;
  std::int64_t bytes = 0;
};

/// The loopback model host (Tests/Support/model-host), with files of our own.
class ModelHost {
 public:
  ModelHost();
  /// The host ends with its input.
  ~ModelHost();

  /// Adds a file of pseudo-random bytes. Two files with the same `seed` and size have the same content.
  HostedFile add(const std::string& identifier, std::int64_t bytes, unsigned seed,
                 const std::string& folder = "Model");

  /// Adds a file as it is.
  void addFile(const std::string& name, const std::string& content) const;

  /// The base address under which `actions` happen. `name` keeps the counts of different tests apart.
  [[nodiscard]] std::string address(const std::string& name, const std::string& actions) const;
  [[nodiscard]] HostStatistics statistics(const std::string& name, const std::string& actions,
                                          const HostedFile& file) const;
  [[nodiscard]] const std::string& certificate() const { return certificate_; }
  [[nodiscard]] std::string content(const HostedFile& file) const;

 private:
  TemporaryFolder folder_;
  ChildProgram process_;
  int port_ = 0;
  std::string certificate_;
};

}  // namespace murmel::test
