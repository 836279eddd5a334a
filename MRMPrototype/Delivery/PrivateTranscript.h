#pragma once

#include "Foundation/SpokenText.h"
#include "Platform/ClipboardSnapshot.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// The type that every application here understands as plain text in UTF-8.
inline constexpr std::string_view plainTextType = "UTF8_STRING";

/// Published conventions by which clipboard histories skip an entry and hide what it says.
inline constexpr std::array<std::string_view, 2> privatePasteboardTypes = {
    "org.nspasteboard.TransientType",
    "org.nspasteboard.ConcealedType",
};
/// The convention that the clipboard histories of Linux follow, and its value.
inline constexpr std::string_view secretHintType = "x-kde-passwordManagerHint";
inline constexpr std::string_view secretHint = "secret";

/// Under which type, and with which bytes, the application marks contents as its own.
struct OwnershipMarker {
  std::string type;
  std::string bytes;
};

/// The transcript as it is put on a clipboard: plain text, the private types, the marker when one is given,
/// then the secret hint and the other names under which applications here ask for plain text.
ClipboardSnapshot privateTranscript(const SpokenText& text, const std::optional<OwnershipMarker>& marker);

}  // namespace murmel
