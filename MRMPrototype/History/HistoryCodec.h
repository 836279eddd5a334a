#pragma once

#include "Foundation/Crypto/SecretBytes.h"
#include "History/HistoryEntry.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace murmel {

/// The stored form of the history: a JSON array of entries, newest first. Neither direction leaves a copy of
/// a text in memory that is not wiped.
SecretBytes encodeHistory(std::span<const HistoryEntry> entries);

/// Nothing when the bytes are not such an array; members that are not known are skipped.
std::optional<std::vector<HistoryEntry>> decodeHistory(std::span<const std::uint8_t> bytes);

}  // namespace murmel
