#pragma once

#include "Platform/PropertyListReader.h"

namespace murmel {

/// Property lists through libplist.
class LibplistReader final : public PropertyListReader {
 public:
  [[nodiscard]] std::optional<std::map<std::string, DefaultsValue>> read(
      std::span<const std::uint8_t> bytes) const override;
};

}  // namespace murmel
