#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace murmel {

/// One case of an enumeration and the text that stands for it where it is stored or sent.
template <class E>
struct RawValueRow {
  E value;
  std::string_view raw;
};

/// Specialise for an enumeration with raw values: every case once, in declaration order.
template <class E>
inline constexpr auto rawValueTable = nullptr;

template <class E>
constexpr std::string_view rawValue(E value) {
  for (const auto& row : rawValueTable<E>) {
    if (row.value == value) return row.raw;
  }
  return {};
}

template <class E>
constexpr std::optional<E> fromRawValue(std::string_view raw) {
  for (const auto& row : rawValueTable<E>) {
    if (row.raw == raw) return row.value;
  }
  return std::nullopt;
}

/// Every case, in declaration order.
template <class E>
constexpr auto allCases() {
  std::array<E, rawValueTable<E>.size()> cases{};
  std::ranges::transform(rawValueTable<E>, cases.begin(), [](const auto& row) { return row.value; });
  return cases;
}

}  // namespace murmel
