#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace murmel {

/// One file that a speech model consists of, known by its contents.
struct SpeechModelFile {
  std::string_view path;    ///< relative to the model's folder
  std::uint64_t size;       ///< bytes
  std::string_view sha256;  ///< lower-case hexadecimal
};

/// The US English model of Debian 12's package pocketsphinx-en-us, below this folder.
inline constexpr std::string_view packagedSpeechModelFolder = "/usr/share/pocketsphinx/model/en-us";
std::span<const SpeechModelFile> packagedSpeechModelFiles();

}  // namespace murmel
