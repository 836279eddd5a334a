#pragma once

#include "Foundation/RawValue.h"

namespace murmel {

/// Whether Russian text goes to a refiner of its own.
enum class SmartRefinementRoutingMode { automaticByLanguage, selectedMultilingualModel };

template <>
inline constexpr auto rawValueTable<SmartRefinementRoutingMode> =
    std::to_array<RawValueRow<SmartRefinementRoutingMode>>({
        {SmartRefinementRoutingMode::automaticByLanguage, "automaticByLanguage"},
        {SmartRefinementRoutingMode::selectedMultilingualModel, "selectedMultilingualModel"},
    });

}  // namespace murmel
