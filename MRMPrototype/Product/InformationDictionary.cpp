#include "Product/InformationDictionary.h"

#include "Foundation/Json/Json.h"

#include <fstream>

namespace murmel {

std::expected<InformationDictionary, std::string> InformationDictionary::read(
    const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::unexpected("Cannot read " + file.string());
  const auto json = parsedJson(std::string(std::istreambuf_iterator<char>(stream), {}));
  if (!json.isObject()) return std::unexpected(file.string() + " is not a JSON object");
  std::map<std::string, std::string, std::less<>> values;
  for (const auto& [key, value] : json.members()) {
    if (auto text = value.text()) values.emplace(key, *std::move(text));
  }
  return InformationDictionary(std::move(values));
}

std::optional<std::string> InformationDictionary::string(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

}  // namespace murmel
