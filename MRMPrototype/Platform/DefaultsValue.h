#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace murmel {

/// One value of a preference store.
using DefaultsValue = std::variant<bool, std::int64_t, double, std::string, std::vector<std::string>,
                                   std::vector<std::uint8_t>>;

}  // namespace murmel
