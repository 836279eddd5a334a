#pragma once

#include "Require.h"

#include <nlohmann/json.hpp>

/// What another reader makes of the text. It refuses numbers beyond a double, which we may skip.
template <class Iterator>
nlohmann::json independently(Iterator begin, Iterator end) {
  try {
    return nlohmann::json::parse(begin, end);
  } catch (const nlohmann::json::out_of_range&) {
    return nullptr;
  } catch (const nlohmann::json::parse_error&) {
    require(false, "an independent reader accepts it");
    return nullptr;
  }
}
