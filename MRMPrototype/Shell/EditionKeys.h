#pragma once

#include "Product/MRMAppIdentity.h"
#include "Storage/KeychainEncryptionKeyStore.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace murmel {

/// Where the keys of one kind of file are, and where the other editions of the application put them: they all
/// use the same files.
inline KeychainEncryptionKeyStore editionKeys(SecretStore& secrets, const std::string& identifier,
                                              std::string_view suffix) {
  std::vector<std::string> others;
  for (const auto edition : allCases<DistributionEdition>()) {
    const auto other = MRMAppIdentity::applicationIdentifier(edition);
    if (other != identifier) others.push_back(std::string(other) + std::string(suffix));
  }
  return {secrets, identifier + std::string(suffix), std::move(others)};
}

}  // namespace murmel
