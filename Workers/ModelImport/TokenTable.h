#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <vector>

namespace murmel::import {

/// The words of Whisper's vocabulary by number, as bytes, without its control tokens, from a tokenizer.json.
/// The error is a sentence for the user.
std::expected<std::vector<std::string>, std::string> readTokenTable(const std::filesystem::path& file);

}  // namespace murmel::import
