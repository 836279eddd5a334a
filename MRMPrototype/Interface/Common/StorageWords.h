#pragma once

#include "Interface/PlatformWords.h"
#include "Storage/SecureStorageStatus.h"

#include <optional>

namespace murmel {

/// What the user is told while private data cannot be kept, and why; empty while it can.
inline QString storageWords(const std::optional<SecureLocalStorageError>& trouble) {
  if (!trouble) return {};
  const SecureStorageNotice notice(*trouble);
  return inPlatformWords(notice.sentence) + u'\n' + inPlatformWords(notice.reason);
}

}  // namespace murmel
