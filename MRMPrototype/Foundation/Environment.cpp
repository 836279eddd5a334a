#include "Foundation/Environment.h"

#include <unistd.h>

namespace murmel {

Environment Environment::ofThisProcess() {
  std::map<std::string, std::string, std::less<>> values;
  for (char** entry = ::environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view text(*entry);
    const auto equals = text.find('=');
    if (equals == std::string_view::npos) continue;
    values.emplace(text.substr(0, equals), text.substr(equals + 1));
  }
  return Environment(std::move(values));
}

std::optional<std::string> Environment::value(std::string_view name) const {
  const auto found = values_.find(name);
  if (found == values_.end() || found->second.empty()) return std::nullopt;
  return found->second;
}

}  // namespace murmel
