#include "Storage/SecureLocalStorageError.h"

#include <system_error>

#include <fmt/core.h>

namespace murmel {

std::string SecureLocalStorageError::description() const {
  switch (case_) {
    case Case::keychain:
      return std::string(describe(SecretStatus{code_}));
    case Case::invalidEnvelope:
      return "The file is not a sealed file";
    case Case::keyUnavailable:
      return "The key of the sealed file is not available";
    case Case::authenticationFailed:
      return "The sealed file was changed since it was written";
    case Case::unreadableContent:
      return "The sealed file holds something else than it should";
    case Case::file:
      break;
  }
  return fmt::format("The file could not be accessed: {}", std::generic_category().message(code_));
}

}  // namespace murmel
