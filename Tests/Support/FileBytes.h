#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

inline std::vector<std::uint8_t> bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

inline std::string textOf(std::span<const std::uint8_t> bytes) {
  return {bytes.begin(), bytes.end()};
}

inline std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string contents;
  std::array<char, 65'536> buffer{};
  while (stream.read(buffer.data(), buffer.size()), stream.gcount() > 0)
    contents.append(buffer.data(), static_cast<std::size_t>(stream.gcount()));
  return contents;
}

inline void writeFile(const std::filesystem::path& file, std::string_view contents) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(contents.data(), static_cast<std::streamsize>(contents.size()));
}

/// Names of everything directly in a folder.
inline std::set<std::string> namesIn(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.insert(entry.path().filename());
  return names;
}

}  // namespace murmel
