#pragma once

#include "Platform/SecureInput.h"

namespace murmel {

/// A password prompt that a test opens and closes.
class FakeSecureInput final : public SecureInput {
 public:
  [[nodiscard]] bool isEnabled() override { return enabled_; }
  void setEnabled(bool enabled) { enabled_ = enabled; }

 private:
  bool enabled_ = false;
};

}  // namespace murmel
