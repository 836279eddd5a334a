#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace murmel::updater {

/// A copy of an archive that only this process has, and that has the digest it must have: whatever happens to
/// the file that it was made from, what is opened is what was verified. The copy lies in `folder`, an open
/// folder, without a name. The error is one sentence.
std::expected<UniqueDescriptor, std::string> verifiedCopy(int archive, int folder, std::int64_t size,
                                                          std::string_view sha256);

/// Unpacks a tar archive (plain, gzip, xz or zstd) from its beginning into `folder`, an open and empty
/// folder. Plain files, folders and links that stay inside are taken, nothing else; nothing may be there
/// twice, and no file gets more rights than reading and executing for all. The error is one sentence; what
/// was written stays.
std::expected<void, std::string> unpackArchive(int archive, int folder);

}  // namespace murmel::updater
