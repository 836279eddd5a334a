#include "Workers/ModelImport/TokenTable.h"

#include "Foundation/Json/Json.h"

#include <fstream>
#include <map>

namespace murmel::import {

namespace {

/// Of the multilingual vocabulary; what follows are control tokens, which the library makes itself.
constexpr std::size_t wordCount = 50'257;

/// The character of U+0000 to U+07FF in UTF-8.
std::string utf8(unsigned scalar) {
  if (scalar < 0x80) return {static_cast<char>(scalar)};
  return {static_cast<char>(0xC0U | scalar >> 6U), static_cast<char>(0x80U | (scalar & 0x3FU))};
}

/// The byte for which each character of the vocabulary stands: a visible one for itself, the others in order
/// for U+0100 and on.
std::map<std::string, char> byteAlphabet() {
  std::map<std::string, char> bytes;
  unsigned next = 0x100;
  for (unsigned byte = 0; byte < 0x100; ++byte) {
    const bool isVisible = (byte >= 33 && byte <= 126) || (byte >= 161 && byte <= 172) || byte >= 174;
    bytes[utf8(isVisible ? byte : next++)] = static_cast<char>(byte);
  }
  return bytes;
}

}  // namespace

std::expected<std::vector<std::string>, std::string> readTokenTable(const std::filesystem::path& file) {
  const auto damaged =
      std::unexpected("The vocabulary " + file.string() + " cannot be read or is not Whisper's.");
  std::ifstream stream(file);
  const auto parsed = parsedJson(std::string(std::istreambuf_iterator<char>(stream), {}));

  const auto bytes = byteAlphabet();
  std::vector<std::string> words(wordCount);
  std::size_t found = 0;
  for (const auto& [token, number] : parsed["model"]["vocab"].members()) {
    const auto index = number.unsignedInteger();
    if (!index) return damaged;
    if (*index >= wordCount) continue;
    ++found;
    for (std::size_t begin = 0; begin < token.size();) {
      const std::size_t length = static_cast<unsigned char>(token[begin]) < 0x80 ? 1 : 2;
      const auto byte = bytes.find(token.substr(begin, length));
      if (byte == bytes.end()) return damaged;
      words[*index] += byte->second;
      begin += length;
    }
  }
  if (found != wordCount) return damaged;
  return words;
}

}  // namespace murmel::import
