#include "Foundation/Json/Json.h"

namespace murmel {

Json parsedJson(std::string_view text) {
  return Json::parse(text, nullptr, /*allow_exceptions=*/false);
}

std::string jsonText(const Json& value, JsonCharacters characters, int indentation) {
  return value.dump(indentation, ' ', characters == JsonCharacters::ascii, Json::error_handler_t::replace);
}

}  // namespace murmel
