#pragma once

#include "Platform/FocusedField.h"

namespace murmel {

/// A field of which a test says whether it hides what is typed.
class FakeFocusedField final : public FocusedField {
 public:
  Task<bool> hidesText(RunningApplication /*application*/) override { co_return hides_; }
  void setHidesText(bool hides) { hides_ = hides; }

 private:
  bool hides_ = false;
};

}  // namespace murmel
