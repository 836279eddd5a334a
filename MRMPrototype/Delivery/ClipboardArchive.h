#pragma once

#include "Platform/ClipboardSnapshot.h"

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Clipboard contents as one run of bytes, for handing them to another process. Never for a file: they are
/// what the user has copied.
std::string archived(const ClipboardSnapshot& contents);

/// Nothing when the bytes are not a whole archive.
std::optional<ClipboardSnapshot> unarchived(std::string_view bytes);

}  // namespace murmel
