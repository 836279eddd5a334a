#include "Platform/Linux/Clipboard/ClipboardTypes.h"

#include <algorithm>
#include <array>

namespace murmel {

namespace {

using namespace std::string_view_literals;

constexpr std::array textTypes = {"UTF8_STRING"sv, "STRING"sv, "TEXT"sv, "COMPOUND_TEXT"sv};
constexpr std::array notKept = {
    "TARGETS"sv,
    "TIMESTAMP"sv,
    "MULTIPLE"sv,
    "SAVE_TARGETS"sv,
    "DELETE"sv,
    "INCR"sv,
    "INSERT_PROPERTY"sv,
    "INSERT_SELECTION"sv,
    "GTK_TEXT_BUFFER_CONTENTS"sv,  // a pointer
};

}  // namespace

bool ClipboardTypes::isText(std::string_view type) {
  return std::ranges::find(textTypes, type) != textTypes.end() || type == "text/plain" ||
         type.starts_with("text/plain;");
}

bool ClipboardTypes::isKept(std::string_view type) {
  return !type.empty() && std::ranges::find(notKept, type) == notKept.end();
}

int ClipboardTypes::urgency(std::string_view type) {
  if (isText(type)) return 0;
  if (type == "text/html" || type == "text/uri-list" || type.starts_with("x-special/")) return 1;
  if (type == "image/png") return 2;
  // Owners make the other picture formats only when asked, which takes them time.
  return type.starts_with("image/") ? 4 : 3;
}

}  // namespace murmel
