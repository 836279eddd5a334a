#include "Platform/Linux/Process/ChildSetup.h"

#include "Platform/Linux/Confinement/Landlock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>

#include <fcntl.h>
#include <linux/close_range.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace murmel {

namespace {

// Private places of the child, all closed by the exec.
constexpr int executablePlace = 3;
constexpr int reportPlace = 4;
constexpr int landlockPlace = 5;
static_assert(landlockPlace + 1 == childLowestFree);

constexpr int failureStatus = 127;  // what shells say when a program could not be started

[[noreturn]] void fail(int report, ChildFailure::Step step) {
  const ChildFailure failure{step, errno};
  // Nobody is there to be told if even this fails; the parent then sees a child that ended at once.
  [[maybe_unused]] const auto written = ::write(report, &failure, sizeof failure);
  ::_exit(failureStatus);
}

bool placeDescriptors(const ChildSetup& setup) {
  return ::dup2(setup.input, STDIN_FILENO) >= 0 && ::dup2(setup.output, STDOUT_FILENO) >= 0 &&
         ::dup2(setup.nullDevice, STDERR_FILENO) >= 0 &&
         ::dup3(setup.executable, executablePlace, O_CLOEXEC) >= 0 &&
         ::dup3(setup.report, reportPlace, O_CLOEXEC) >= 0 &&
         (setup.landlock < 0 || ::dup3(setup.landlock, landlockPlace, O_CLOEXEC) >= 0) &&
         ::close_range(childLowestFree, ~0U, 0) == 0;
}

/// What the system holds lower already stays there: an ordinary process cannot raise it.
bool limit(int resource, rlim_t most) {
  rlimit now{};
  if (::getrlimit(resource, &now) != 0) return false;
  now.rlim_cur = now.rlim_max = std::min(most, now.rlim_max);
  return ::setrlimit(resource, &now) == 0;
}

bool setLimits(const ChildSetup& setup) {
  // One byte, not zero: with a pipe in core_pattern the kernel ignores a limit of zero, but takes one as "no
  // dump at all"; for a file it is too small to write anything.
  constexpr rlim_t noCore = 1;
  return limit(RLIMIT_CORE, noCore) && limit(RLIMIT_NOFILE, setup.openFiles) &&
         limit(RLIMIT_FSIZE, setup.largestFile) && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
}

/// Handlers go with the exec, but ignored signals and the mask would be inherited.
void resetSignals() {
  struct sigaction defaults {};
  defaults.sa_handler = SIG_DFL;
  // Refused for SIGKILL, SIGSTOP and the C library's own; those need nothing.
  for (int signal = 1; signal < NSIG; ++signal) ::sigaction(signal, &defaults, nullptr);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// Where memory runs short the system ends a child before the application, which has the words and starts
/// another one, however long the recording has become. Nothing depends on it.
void endBeforeTheApplication() {
  constexpr int sooner = 100;  // thousandths of the memory that there is
  constexpr int most = 1'000;
  // Who may write here is asked of the copied memory's owner, as in `PrivateRoot`.
  const int dumpable = ::prctl(PR_GET_DUMPABLE, 0, 0, 0, 0);
  ::prctl(PR_SET_DUMPABLE, 1, 0, 0, 0);
  const int file = ::open("/proc/self/oom_score_adj", O_RDWR | O_CLOEXEC);
  ::prctl(PR_SET_DUMPABLE, dumpable, 0, 0, 0);
  if (file < 0) return;
  std::array<char, 16> text{};
  const auto length = ::read(file, text.data(), text.size());
  int score = 0;
  std::from_chars(text.data(), text.data() + std::max<ssize_t>(length, 0), score);
  const auto end = std::to_chars(text.data(), text.data() + text.size(), std::min(score + sooner, most)).ptr;
  [[maybe_unused]] const auto written =
      ::pwrite(file, text.data(), static_cast<std::size_t>(end - text.data()), 0);
  ::close(file);
}

}  // namespace

void becomeExecutable(const ChildSetup& setup) {
  using Step = ChildFailure::Step;
  // First of all, so that the window in which the parent can die unnoticed is closed by the comparison.
  if (::prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0) != 0) fail(setup.report, Step::limits);
  // Not by its number, which has no meaning in another namespace: a pipe that nobody reads has no owner.
  ::close(setup.reportEnd);
  pollfd owner{setup.report, 0, 0};
  if (::poll(&owner, 1, 0) != 0) {
    errno = ESRCH;
    fail(setup.report, Step::parentDied);
  }
  if (!placeDescriptors(setup)) fail(setup.report, Step::descriptors);
  if (!setLimits(setup)) fail(reportPlace, Step::limits);
  // A session of its own: no controlling terminal, and a Ctrl+C meant for us does not reach it. Both calls
  // cannot fail in a freshly forked child.
  ::setsid();
  ::umask(S_IRWXG | S_IRWXO);
  if (::chdir("/") != 0) fail(reportPlace, Step::limits);
  resetSignals();
  endBeforeTheApplication();
  if (setup.root != nullptr && !setup.root->enter()) fail(reportPlace, Step::root);
  if (setup.landlock >= 0 && !confinement::imposeLandlock(landlockPlace))
    fail(reportPlace, Step::confinement);
  if (!confinement::impose(*setup.calls)) fail(reportPlace, Step::confinement);
  ::syscall(SYS_execveat, executablePlace, "", setup.arguments, setup.environment, AT_EMPTY_PATH,
            setup.password);
  fail(reportPlace, Step::execute);
}

}  // namespace murmel
