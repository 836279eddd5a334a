#pragma once

#include "Platform/FocusedField.h"

namespace murmel {

/// A field of which a test says what it is.
class FakeFocusedField final : public FocusedField {
 public:
  [[nodiscard]] FieldTellers tellers() override { return FieldTellers::all; }
  void prepare(const RunningApplication& /*application*/) override { ++prepared_; }
  Task<FocusedFieldKind> kind(RunningApplication /*application*/) override { co_return kind_; }
  void setKind(FocusedFieldKind kind) { kind_ = kind; }
  [[nodiscard]] int prepared() const { return prepared_; }

 private:
  FocusedFieldKind kind_ = FocusedFieldKind::notTold;
  int prepared_ = 0;
};

}  // namespace murmel
