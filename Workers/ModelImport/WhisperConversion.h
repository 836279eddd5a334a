#pragma once

#include "Workers/ModelImport/ModelWriter.h"
#include "Workers/ModelImport/WeightFile.h"

#include <expected>
#include <string>
#include <vector>

namespace murmel::import {

enum class WeightForm {
  float16,  ///< as they are
  q8,       ///< the matrices in ggml's q8_0: half the size
};

/// Writes a multilingual Whisper model in whisper.cpp's format, byte by byte what is published. The error is
/// a sentence for the user.
std::expected<void, std::string> writeWhisperModel(const WeightFile& weights,
                                                   const std::vector<std::string>& words, WeightForm form,
                                                   ModelWriter& output);

}  // namespace murmel::import
