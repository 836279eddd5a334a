#pragma once

#include <QString>
#include <string_view>

namespace murmel {

/// A text of the core as this platform says it: the keys by the names that stand on keyboards here.
QString inPlatformWords(std::string_view text);

}  // namespace murmel
