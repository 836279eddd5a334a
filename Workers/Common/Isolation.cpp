#include "Workers/Common/Isolation.h"

#include "Foundation/UniqueDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace murmel::worker {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_AARCH64;
#else
#error "the system call filter does not know this architecture"
#endif

/// Connections, other processes, other programs, and what reaches around the filter.
constexpr auto deniedCalls = std::to_array<std::uint32_t>({
  SYS_socket, SYS_socketpair, SYS_connect, SYS_bind, SYS_listen, SYS_accept, SYS_accept4, SYS_sendto,
      SYS_sendmsg, SYS_sendmmsg, SYS_io_uring_setup, SYS_execve, SYS_execveat, SYS_ptrace,
      SYS_process_vm_readv, SYS_process_vm_writev, SYS_pidfd_open, SYS_pidfd_getfd, SYS_kill, SYS_unshare,
      SYS_setns, SYS_mount, SYS_bpf, SYS_perf_event_open, SYS_userfaultfd, SYS_keyctl, SYS_add_key,
      SYS_request_key, SYS_open_by_handle_at, SYS_memfd_create,
#if defined(__x86_64__)
      SYS_fork, SYS_vfork,
#endif
});

/// A program for the kernel's packet filter, which judges system calls.
class Filter {
 public:
  void load(std::size_t offset) { add(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset)); }
  void answer(std::uint32_t action) { add(BPF_RET | BPF_K, action); }
  /// Runs the next instruction only where the loaded value compares as told, and skips it elsewhere.
  void when(std::uint16_t comparison, std::uint32_t value) { add(jump(comparison), value, 0, 1); }
  void unless(std::uint16_t comparison, std::uint32_t value) { add(jump(comparison), value, 1, 0); }

  [[nodiscard]] bool install() {
    const sock_fprog program{static_cast<unsigned short>(instructions_.size()), instructions_.data()};
    return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
  }

 private:
  static std::uint16_t jump(std::uint16_t comparison) {
    return static_cast<std::uint16_t>(BPF_JMP | BPF_K | comparison);
  }
  void add(std::uint16_t code, std::uint32_t value, std::uint8_t whenTrue = 0, std::uint8_t whenFalse = 0) {
    instructions_.push_back({code, whenTrue, whenFalse, value});
  }
  std::vector<sock_filter> instructions_;
};

constexpr std::uint32_t refuse(std::uint32_t error) {
  return SECCOMP_RET_ERRNO | error;
}

bool filterSystemCalls(OpenConnections connections) {
  Filter filter;
  filter.load(offsetof(seccomp_data, arch));
  // Another architecture's numbers mean other calls.
  filter.unless(BPF_JEQ, architecture);
  filter.answer(SECCOMP_RET_KILL_PROCESS);
  filter.load(offsetof(seccomp_data, nr));
#if defined(__x86_64__)
  constexpr std::uint32_t firstX32Call = 0x4000'0000;
  filter.when(BPF_JGE, firstX32Call);
  filter.answer(refuse(ENOSYS));
#endif
  for (const auto call : deniedCalls) {
    if (call == SYS_sendmsg && connections == OpenConnections::sentMessages) continue;
    filter.when(BPF_JEQ, call);
    filter.answer(refuse(EPERM));
  }
  // Its flags lie in memory, where a filter cannot look. The C library then uses the older call.
  filter.when(BPF_JEQ, SYS_clone3);
  filter.answer(refuse(ENOSYS));
  // Threads are allowed, processes are not.
  filter.unless(BPF_JEQ, SYS_clone);
  filter.answer(SECCOMP_RET_ALLOW);
  filter.load(offsetof(seccomp_data, args[0]));  // the low half: both architectures are little-endian
  filter.when(BPF_JSET, CLONE_THREAD);
  filter.answer(SECCOMP_RET_ALLOW);
  filter.answer(refuse(EPERM));
  return filter.install();
}

/// The kernel's structure as of version 6 of Landlock; older kernels want the members that they do not know
/// zero.
struct LandlockRules {
  std::uint64_t files = 0;
  std::uint64_t network = 0;
  std::uint64_t scopes = 0;
};

LandlockRules everythingThatLandlockKnows(long version) {
  constexpr auto rights = [](int count) { return (std::uint64_t{1} << count) - 1; };
  // Rights on files that each version knows, counted.
  constexpr std::array<int, 5> fileRights{13, 14, 15, 15, 16};
  const auto index = static_cast<std::size_t>(std::min<long>(version, fileRights.size())) - 1;
  return {
      .files = rights(fileRights[index]),
      .network = version >= 4 ? rights(2) : 0,  // bind and connect, TCP
      .scopes = version >= 6 ? rights(2) : 0,   // abstract sockets, signals
  };
}

bool allow(int ruleset, const std::filesystem::path& path, std::uint64_t rights) {
  const UniqueDescriptor place(::open(path.c_str(), O_PATH | O_CLOEXEC));
  if (!place) return false;
  landlock_path_beneath_attr rule{};
  rule.allowed_access = rights;
  rule.parent_fd = place.get();
  return ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

/// True also where the kernel has no Landlock: the doors are closed once the model is loaded in any case.
bool restrictFiles(const std::filesystem::path& readable) {
  const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < 1) return true;
  const auto rules = everythingThatLandlockKnows(version);
  const UniqueDescriptor ruleset(
      static_cast<int>(::syscall(SYS_landlock_create_ruleset, &rules, sizeof rules, 0)));
  if (!ruleset) return false;
  constexpr auto read = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
  return allow(ruleset.get(), readable, read) &&
         allow(ruleset.get(), "/dev/null", LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE) &&
         ::syscall(SYS_landlock_restrict_self, ruleset.get(), 0) == 0;
}

/// Whether the filter answers an attempt to connect; the limit on descriptors would hide that it does not.
bool refusesConnections() {
  const auto isRefused = [](int family) {
    const UniqueDescriptor socket(::socket(family, SOCK_STREAM, 0));
    return !socket && errno == EPERM;
  };
  return isRefused(AF_INET) && isRefused(AF_INET6) && isRefused(AF_UNIX);
}

bool refusesFiles() {
  const UniqueDescriptor file(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  return !file;
}

}  // namespace

std::expected<void, std::string> isolate(const std::filesystem::path& readable, OpenConnections connections) {
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || !filterSystemCalls(connections))
    return std::unexpected("worker could not be isolated");
  if (!restrictFiles(readable)) return std::unexpected("model directory is not accessible");
  return {};
}

std::expected<void, std::string> closeDoors() {
  constexpr rlimit none{0, 0};
  if (!refusesConnections() || ::setrlimit(RLIMIT_NOFILE, &none) != 0 || !refusesFiles())
    return std::unexpected("worker could not be isolated");
  return {};
}

}  // namespace murmel::worker
