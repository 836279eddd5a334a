#include "Support/Texts.h"

#include <algorithm>

namespace murmel::test {

static testing::AssertionResult result(bool isThere, const Strings& parts, const Strings& list) {
  std::string quoted;
  for (const auto& each : parts) quoted += '"' + each + "\" ";
  quoted += "in";
  for (const auto& each : list) quoted += " \"" + each + '"';
  return testing::AssertionResult(isThere) << quoted;
}

testing::AssertionResult contains(std::string_view text, std::string_view part) {
  return result(text.contains(part), {std::string(part)}, {std::string(text)});
}

testing::AssertionResult contains(const Strings& list, const Strings& parts) {
  const auto isThere = [&](const std::string& part) { return std::ranges::find(list, part) != list.end(); };
  return result(std::ranges::all_of(parts, isThere), parts, list);
}

}  // namespace murmel::test
