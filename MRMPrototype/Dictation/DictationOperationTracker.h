#pragma once

#include <cstdint>

namespace murmel {

/// Names one recording and everything that is done for it.
using OperationIdentifier = std::uint64_t;

/// Knows which operation is the current one. Whatever continues later compares the identifier that it was
/// started for: a mismatch means that it was superseded and only cleans up.
class DictationOperationTracker {
 public:
  [[nodiscard]] OperationIdentifier current() const { return current_; }
  [[nodiscard]] bool isCurrent(OperationIdentifier operation) const { return operation == current_; }
  /// Starts the next operation and supersedes all earlier ones.
  OperationIdentifier advance() { return ++current_; }

 private:
  OperationIdentifier current_ = 0;
};

}  // namespace murmel
