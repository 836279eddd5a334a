#pragma once

#include "Foundation/RawValue.h"

#include <string>

namespace murmel {

/// Why phrases are no longer inserted while the user speaks.
enum class LiveInsertionBlock {
  appChanged,
  noTarget,
  targetNotActive,
  secureInput,
  noPermission,
  eventsUnavailable,
  unknown,
};

/// The raw values are the words of the diagnostic log.
template <>
inline constexpr auto rawValueTable<LiveInsertionBlock> = std::to_array<RawValueRow<LiveInsertionBlock>>({
    {LiveInsertionBlock::appChanged, "app_changed"},
    {LiveInsertionBlock::noTarget, "no_target"},
    {LiveInsertionBlock::targetNotActive, "target_not_active"},
    {LiveInsertionBlock::secureInput, "secure_input"},
    {LiveInsertionBlock::noPermission, "no_permission"},
    {LiveInsertionBlock::eventsUnavailable, "events_unavailable"},
    {LiveInsertionBlock::unknown, "unknown"},
});

/// The notice for the user.
std::string message(LiveInsertionBlock block);

}  // namespace murmel
