#include "Platform/Linux/Confinement/CallFilter.h"

#include "Foundation/UniqueDescriptor.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <linux/seccomp.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace murmel::confinement {

bool impose(const CallProgram& program) {
  // The kernel only reads it.
  const sock_fprog given{static_cast<unsigned short>(program.size()),
                         const_cast<sock_filter*>(program.data())};
  return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &given) == 0;
}

CallFilter::CallFilter() : rules_(::seccomp_init(SCMP_ACT_ERRNO(EPERM))) {
  isComplete_ = rules_ != nullptr &&
                ::seccomp_attr_set(rules_, SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS) == 0 &&
                // A tree of comparisons: the calls are many, and recognition makes some of them often.
                ::seccomp_attr_set(rules_, SCMP_FLTATR_CTL_OPTIMIZE, 2) == 0;
}

CallFilter::~CallFilter() {
  if (rules_ != nullptr) ::seccomp_release(rules_);
}

void CallFilter::allow(std::span<const int> calls) {
  for (const int call : calls)
    isComplete_ = isComplete_ && ::seccomp_rule_add_array(rules_, SCMP_ACT_ALLOW, call, 0, nullptr) == 0;
}

void CallFilter::allowWhen(int call, std::initializer_list<Condition> conditions) {
  std::vector<scmp_arg_cmp> compared;
  for (const auto& condition : conditions)
    compared.push_back({condition.argument, SCMP_CMP_MASKED_EQ, condition.mask, condition.value});
  isComplete_ =
      isComplete_ && ::seccomp_rule_add_array(rules_, SCMP_ACT_ALLOW, call,
                                              static_cast<unsigned>(compared.size()), compared.data()) == 0;
}

void CallFilter::allowValues(int call, unsigned argument, std::initializer_list<std::uint64_t> values) {
  for (const auto value : values) allowWhen(call, {{argument, lowHalf, value & lowHalf}});
}

void CallFilter::hide(std::initializer_list<int> calls) {
  for (const int call : calls)
    isComplete_ =
        isComplete_ && ::seccomp_rule_add_array(rules_, SCMP_ACT_ERRNO(ENOSYS), call, 0, nullptr) == 0;
}

std::optional<CallProgram> CallFilter::program() const {
  if (!isComplete_) return std::nullopt;
  // A pipe holds the longest program that the kernel takes.
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
  const UniqueDescriptor readEnd(ends[0]);
  UniqueDescriptor writeEnd(ends[1]);
  if (::seccomp_export_bpf(rules_, writeEnd.get()) != 0) return std::nullopt;
  writeEnd.reset();
  CallProgram program(BPF_MAXINSNS);
  std::size_t size = 0;
  while (true) {
    auto* const place = reinterpret_cast<char*>(program.data()) + size;
    const auto count = ::read(readEnd.get(), place, program.size() * sizeof(sock_filter) - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
  }
  program.resize(size / sizeof(sock_filter));
  if (program.empty()) return std::nullopt;
  return program;
}

}  // namespace murmel::confinement
