#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// The names in the user's vocabulary (what its lines put in place of a term, where it has a capital letter),
/// for recognisers that hear a name better when they are told of it. Short ones and few: more of them help no
/// more, and make ordinary words worse.
std::vector<std::string> vocabularyHints(std::string_view vocabulary);

}  // namespace murmel
