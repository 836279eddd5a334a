#pragma once

#include "Workers/Updater/UpdaterOptions.h"

#include <expected>
#include <string>

namespace murmel::updater {

/// The bytes at the address of the feed, at most as many as a feed has. Nothing of them is believed yet.
/// `input` ends when nobody wants them any more. The error is one sentence.
std::expected<std::string, std::string> fetchFeed(const UpdaterOptions& options, int input);

}  // namespace murmel::updater
