#include "Foundation/Crypto/Wipe.h"

#include <string.h>

namespace murmel {

void wipe(std::span<std::uint8_t> bytes) noexcept {
  ::explicit_bzero(bytes.data(), bytes.size());
}

void wipe(std::string& text) noexcept {
  text.resize(text.capacity());  // never allocates
  ::explicit_bzero(text.data(), text.size());
  text.clear();
}

}  // namespace murmel
