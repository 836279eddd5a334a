#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <vector>

#include <linux/filter.h>

namespace murmel::confinement {

/// A finished program for the kernel, which judges system calls. Taking it needs no memory and no lock.
using CallProgram = std::vector<sock_filter>;

/// Puts `program` over this process for good. `noNewPrivileges` must be set. Safe between fork and exec.
[[nodiscard]] bool impose(const CallProgram& program);

/// Collects the calls that are allowed. Every other one fails with EPERM, and one of another architecture
/// ends the process.
class CallFilter {
 public:
  /// One condition on one argument, counted from 0: `argument & mask == value`.
  struct Condition {
    unsigned argument;
    std::uint64_t mask;
    std::uint64_t value;
  };
  static constexpr std::uint64_t wholeValue = ~std::uint64_t{0};
  static constexpr std::uint64_t lowHalf = 0xffff'ffff;  ///< what an `int` fills; the rest is anything

  CallFilter();
  ~CallFilter();
  CallFilter(const CallFilter&) = delete;
  CallFilter& operator=(const CallFilter&) = delete;

  void allow(std::span<const int> calls);
  void allow(std::initializer_list<int> calls) { allow(std::span(calls.begin(), calls.size())); }
  /// Where all conditions hold; several rules for one call are alternatives.
  void allowWhen(int call, std::initializer_list<Condition> conditions);
  /// `call` with its argument being one of `values`.
  void allowValues(int call, unsigned argument, std::initializer_list<std::uint64_t> values);
  /// Fails as on a system that does not have it: the C library then uses an older one.
  void hide(std::initializer_list<int> calls);

  /// Nothing when the kernel's form of it could not be made.
  [[nodiscard]] std::optional<CallProgram> program() const;

 private:
  void* rules_;  ///< the library's
  bool isComplete_ = true;
};

}  // namespace murmel::confinement
