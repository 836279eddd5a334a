#pragma once

#include "Settings/DefaultsStore.h"

#include <expected>
#include <string>
#include <string_view>

namespace murmel {

/// Every setting that a person can change, as JSON in the form of "murmel settings list --json": no
/// vocabulary, no history, no key, nothing that migrations remember.
std::string exportedSettings(const DefaultsStore& store);

/// Stores the settings that such a text names; the others stay as they are. All of them or, when one is
/// unknown or has a value that it cannot have, none: the error says which, in a sentence for the user.
std::expected<void, std::string> importSettings(DefaultsStore& store, std::string_view json);

}  // namespace murmel
