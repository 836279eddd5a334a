#include "Delivery/LiveInsertionBlock.h"

#include <string_view>

namespace murmel {

namespace {

/// Empty for `unknown`, which has no reason to give.
std::string_view reason(LiveInsertionBlock block) {
  switch (block) {
    case LiveInsertionBlock::appChanged:
      return "you switched applications";
    case LiveInsertionBlock::noTarget:
      return "the original application is unavailable";
    case LiveInsertionBlock::targetNotActive:
      return "the original application is not active";
    case LiveInsertionBlock::secureInput:
      return "secure input is enabled";
    case LiveInsertionBlock::noPermission:
      return "paste permission is unavailable";
    case LiveInsertionBlock::eventsUnavailable:
      return "the paste event could not be created";
    case LiveInsertionBlock::unknown:
      return {};
  }
  return {};
}

}  // namespace

std::string message(LiveInsertionBlock block) {
  std::string text = "Insertion stopped";
  if (const auto why = reason(block); !why.empty()) text.append(": ").append(why);
  return text + ". Remaining text copied — press ⌘V.";
}

}  // namespace murmel
