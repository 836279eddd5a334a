#pragma once

#include "MRMUpdatePolicy/UpdateFeed.h"
#include "Workers/Updater/UpdaterOptions.h"

#include <cstdint>
#include <expected>
#include <string>

namespace murmel::updater {

/// Reads the one line that "download" and "unpack" are told, {"feed": BASE64, "sha256": DIGEST, "serial": N},
/// and finds in the feed, once its signature holds, the release with that digest: no address comes from
/// anywhere else. `serial` is the highest that has been seen, `now` in seconds since 1970. The error is one
/// sentence.
std::expected<UpdateRelease, std::string> readOrder(int input, const UpdaterOptions& options,
                                                    std::int64_t now);

/// Whether whoever started this has gone. Nothing is said after the order: what can be read is the end.
bool hasEnded(int input);

}  // namespace murmel::updater
