#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// A folder of the test's own, removed with everything in it.
class PrivateFolder {
 public:
  PrivateFolder() {
    auto pattern = (std::filesystem::temp_directory_path() / "murmel-test.XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
  }
  ~PrivateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// Names of everything directly in the folder.
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) found.insert(entry.path().filename());
    return found;
  }

 private:
  std::filesystem::path path_;
};

inline std::vector<std::uint8_t> bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

inline std::string textOf(std::span<const std::uint8_t> bytes) {
  return {bytes.begin(), bytes.end()};
}

inline std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline void writeFile(const std::filesystem::path& file, std::string_view contents) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(contents.data(), static_cast<std::streamsize>(contents.size()));
}

}  // namespace murmel
