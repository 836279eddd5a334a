#include "Workers/Common/Isolation.h"

#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/Confinement/CallLists.h"
#include "Platform/Linux/Confinement/Landlock.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <optional>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace murmel::worker {

namespace {

std::unexpected<std::string> notIsolated() {
  return std::unexpected(std::string("worker could not be isolated"));
}

/// Whether the filter answers; the limit on descriptors would hide that it does not.
bool isRefused(int result) {
  const UniqueDescriptor opened(result);
  return !opened && errno == EPERM;
}

bool refusesConnections() {
  return isRefused(::socket(AF_INET, SOCK_STREAM, 0)) && isRefused(::socket(AF_INET6, SOCK_STREAM, 0)) &&
         isRefused(::socket(AF_UNIX, SOCK_STREAM, 0));
}

/// Harmless where it succeeds: no signal, to the own group; a program without the memory for its arguments.
bool refusesProcesses() {
  char* const none[] = {nullptr};
  const bool refusesPrograms =
      ::execve("/bin/true", none, reinterpret_cast<char* const*>(1)) != 0 && errno != EFAULT;
  return refusesPrograms && ::kill(0, 0) != 0 && errno == EPERM;
}

bool refusesFiles() {
  const UniqueDescriptor root(::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const UniqueDescriptor users(::open("/etc/passwd", O_RDONLY | O_CLOEXEC));
  return !root && !users;
}

bool refusesCode() {
  void* const memory = ::mmap(nullptr, 1, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return memory == MAP_FAILED && errno == EPERM;
}

bool impose(const std::optional<confinement::CallProgram>& program) {
  return program && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && confinement::impose(*program);
}

}  // namespace

std::expected<void, std::string> isolate(const std::filesystem::path& readable) {
  std::error_code missing;
  if (!readable.empty() && !std::filesystem::exists(readable, missing))
    return std::unexpected("model directory is not accessible");
  const int version = confinement::landlockVersion();
  // Without, the launcher has decided whether this process may run at all.
  if (version < 1) return {};
  confinement::LandlockRules rules(version, /*connects=*/false);
  if (!rules.descriptor() || (!readable.empty() && !rules.allowReading(readable)) ||
      !rules.allowUsing("/dev/null") || ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      !confinement::imposeLandlock(rules.descriptor().get()))
    return notIsolated();
  return {};
}

std::expected<void, std::string> closeDoors() {
  constexpr rlimit none{0, 0};
  const auto program = confinement::readyWorker();
  if (::setrlimit(RLIMIT_NOFILE, &none) != 0 || !impose(program) || !refusesConnections() ||
      !refusesProcesses() || !refusesFiles() || !refusesCode())
    return notIsolated();
  return {};
}

std::expected<void, std::string> provedConfined(bool connects) {
  if (std::getenv("MURMEL_UNCONFINED") != nullptr)
    return {};  // NOLINT(concurrency-mt-unsafe): there is one thread
  if (refusesFiles() && refusesProcesses() && (connects || refusesConnections())) return {};
  return std::unexpected(std::string("This process is not confined and does nothing."));
}

void closeMemory() {
  ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
}

void endWhenAsked() {
  constexpr int shells = 128;  // what they add to the number of a signal
  std::signal(SIGTERM, [](int signal) { ::_exit(shells + signal); });
}

std::expected<void, std::string> keepConnections() {
  if (!impose(confinement::connectedKeeper()) || !refusesConnections() || !refusesProcesses() ||
      !refusesFiles() || !refusesCode())
    return notIsolated();
  return {};
}

}  // namespace murmel::worker
