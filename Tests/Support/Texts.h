#pragma once

/// What tests say of texts and lists of them. Every test reads this, so it brings little along.

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest-assertion-result.h>

namespace murmel::test {

using Strings = std::vector<std::string>;

/// Whether `part` is somewhere in `text`, or all of `parts` in `list`. As a failure it says what is there.
[[nodiscard]] testing::AssertionResult contains(std::string_view text, std::string_view part);
[[nodiscard]] testing::AssertionResult contains(const Strings& list, const Strings& parts);

}  // namespace murmel::test
