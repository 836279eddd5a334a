#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace murmel {

using Json = nlohmann::json;

// The library's parser and writer are templates that take a second of compilation in each file that calls
// them: here they are made once.

/// The value of the text (RFC 8259 in UTF-8); discarded (`is_discarded()`, and no object or array) when it is
/// malformed or more than one value.
Json parsedJson(std::string_view text);

enum class JsonCharacters { utf8, ascii };

/// One line without an end, or lines indented by so many spaces. Bytes that are not UTF-8 become U+FFFD.
std::string jsonText(const Json& value, JsonCharacters characters = JsonCharacters::utf8,
                     int indentation = -1);

}  // namespace murmel
