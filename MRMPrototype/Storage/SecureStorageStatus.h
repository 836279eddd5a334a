#pragma once

#include <string_view>

namespace murmel {

/// Whether private data is being kept safely.
enum class SecureStorageStatus { available, unavailable };

/// What the user reads; empty while all is well.
constexpr std::string_view message(SecureStorageStatus status) {
  return status == SecureStorageStatus::available ? std::string_view()
                                                  : "Secure local storage is unavailable. Changes remain in "
                                                    "memory for this session and may not survive "
                                                    "relaunch.";
}

}  // namespace murmel
