#pragma once

#include "Platform/DefaultsValue.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>

namespace murmel {

/// Reads property lists, in XML or binary form. Stateless.
class PropertyListReader {
 public:
  virtual ~PropertyListReader() = default;
  /// The members of the outermost dictionary whose values a preference store can hold. Nothing when `bytes`
  /// is not a property list with a dictionary outermost.
  [[nodiscard]] virtual std::optional<std::map<std::string, DefaultsValue>> read(
      std::span<const std::uint8_t> bytes) const = 0;
};

}  // namespace murmel
