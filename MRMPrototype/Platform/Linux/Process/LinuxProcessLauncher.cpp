#include "Platform/Linux/Process/LinuxProcessLauncher.h"

#include "Platform/Linux/Process/ChildSetup.h"
#include "Platform/Linux/Process/LinuxChildProcess.h"
#include "Platform/Linux/Process/PreparedSandbox.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace murmel {

namespace {

/// Requests carry minutes of audio: a larger pipe means fewer turns. The most an ordinary user may ask for.
constexpr int inputPipeSize = 1 << 20;

std::unexpected<std::string> failure(std::string_view doing, int error) {
  return std::unexpected(std::string(doing) + ": " + std::generic_category().message(error));
}

struct OpenedExecutable {
  UniqueDescriptor descriptor;
  ExecutableIdentity identity;
};

std::expected<OpenedExecutable, std::string> openExecutable(const std::filesystem::path& path) {
  if (!path.is_absolute()) return std::unexpected("the path of the executable is not absolute");
  // Not blocking: a FIFO in its place must not stop us.
  UniqueDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!descriptor) return failure("cannot open the executable", errno);
  struct stat status {};
  if (::fstat(descriptor.get(), &status) != 0) return failure("cannot examine the executable", errno);
  if (!S_ISREG(status.st_mode)) return std::unexpected("the executable is not a regular file");
  // A script would be opened a second time, by name and by another program than the one that was checked.
  std::array<char, 4> magic{};
  const auto size = ::pread(descriptor.get(), magic.data(), magic.size(), 0);
  if (std::string_view(magic.data(), magic.size()) !=
          "\x7f"
          "ELF" ||
      size != static_cast<ssize_t>(magic.size())) {
    return std::unexpected("the executable is not a program");
  }
  return OpenedExecutable{std::move(descriptor), {status.st_dev, status.st_ino}};
}

/// The same open file at a number that the child does not need for itself.
UniqueDescriptor raised(UniqueDescriptor descriptor) {
  if (!descriptor || descriptor.get() >= childLowestFree) return descriptor;
  return UniqueDescriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, childLowestFree));
}

struct Pipe {
  UniqueDescriptor readEnd;
  UniqueDescriptor writeEnd;

  [[nodiscard]] bool isComplete() const { return readEnd && writeEnd; }
};

Pipe makePipe() {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  Pipe pipe{UniqueDescriptor(ends[0]), UniqueDescriptor(ends[1])};
  return {raised(std::move(pipe.readEnd)), raised(std::move(pipe.writeEnd))};
}

/// Null-terminated, as the exec wants it. The strings must outlive the result.
std::vector<char*> pointers(std::vector<std::string>& strings) {
  std::vector<char*> result;
  result.reserve(strings.size() + 1);
  for (auto& text : strings) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

/// Forks with every signal blocked, so that no handler of ours ever runs in the child.
pid_t forkQuietly(const ChildSetup& setup) {
  sigset_t all;
  sigset_t before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  // Without the atfork handlers of libraries: the child calls nothing of theirs.
  const pid_t child =
      setup.root == nullptr
          ? ::_Fork()
          : static_cast<pid_t>(::syscall(SYS_clone, setup.root->cloneFlags() | SIGCHLD, 0, 0, 0, 0));
  if (child == 0) becomeExecutable(setup);
  const int error = errno;
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  errno = error;
  return child;
}

void reapFailed(pid_t child) {
  while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

std::string_view description(ChildFailure::Step step) {
  switch (step) {
    case ChildFailure::Step::descriptors:
      return "cannot set up the descriptors of the process";
    case ChildFailure::Step::limits:
      return "cannot set the limits of the process";
    case ChildFailure::Step::root:
    case ChildFailure::Step::confinement:
      return "cannot confine the process";
    case ChildFailure::Step::parentDied:
      return "the application ended";
    case ChildFailure::Step::execute:
      return "cannot execute the program";
  }
  std::unreachable();
}

/// Waits until the child has become the program or has told why not.
std::optional<ChildFailure> awaitExec(int report) {
  ChildFailure told;
  ssize_t count = 0;
  do {
    count = ::read(report, &told, sizeof told);
  } while (count < 0 && errno == EINTR);
  if (count == 0) return std::nullopt;
  if (count == sizeof told) return told;
  return ChildFailure{ChildFailure::Step::execute, ECHILD};
}

/// The number of the child that has become the program.
std::expected<pid_t, ChildFailure> startedChild(ChildSetup setup) {
  auto report = makePipe();
  if (!report.isComplete()) return std::unexpected(ChildFailure{ChildFailure::Step::descriptors, errno});
  setup.report = report.writeEnd.get();
  setup.reportEnd = report.readEnd.get();
  const pid_t child = forkQuietly(setup);
  if (child < 0)
    return std::unexpected(ChildFailure{
        setup.root == nullptr ? ChildFailure::Step::descriptors : ChildFailure::Step::root, errno});
  report.writeEnd.reset();
  if (const auto failed = awaitExec(report.readEnd.get())) {
    reapFailed(child);
    return std::unexpected(*failed);
  }
  return child;
}

}  // namespace

std::expected<std::unique_ptr<ChildProcess>, std::string> LinuxProcessLauncher::launch(
    const ProcessRequest& request) {
  auto executable = openExecutable(request.executable);
  if (!executable) return std::unexpected(std::move(executable.error()));
  auto sandbox = PreparedSandbox::of(request, policy_);
  if (!sandbox) return std::unexpected(std::move(sandbox.error()));
  const auto landlock = raised(std::move(sandbox->landlock));
  if (sandbox->hasLandlock && !landlock) return failure("cannot confine the process", errno);
  const auto program = raised(std::move(executable->descriptor));
  const auto nullDevice = raised(UniqueDescriptor(::open("/dev/null", O_RDWR | O_CLOEXEC)));
  auto input = makePipe();
  auto output = makePipe();
  if (!program || !nullDevice || !input.isComplete() || !output.isComplete())
    return failure("cannot open the pipes of the process", errno);
  ::fcntl(input.writeEnd.get(), F_SETPIPE_SZ, inputPipeSize);  // A smaller pipe is only slower.

  std::vector<std::string> arguments{request.executable.string()};
  arguments.insert(arguments.end(), request.arguments.begin(), request.arguments.end());
  auto environment = request.environment;
  // Else it would find out by itself, and refuse.
  if (!sandbox->hasLandlock) environment.emplace_back("MURMEL_UNCONFINED=1");
  const auto argumentPointers = pointers(arguments);
  const auto environmentPointers = pointers(environment);
  ChildSetup setup{
      .input = input.readEnd.get(),
      .output = output.writeEnd.get(),
      .nullDevice = nullDevice.get(),
      .executable = program.get(),
      .arguments = argumentPointers.data(),
      .environment = environmentPointers.data(),
      .landlock = landlock.get(),
      .root = hasNamespaces_ ? &sandbox->root : nullptr,
      .calls = &sandbox->calls,
      .password = sandbox->password,
      .openFiles = request.sandbox.limits.openFiles,
      .largestFile = request.sandbox.writable.empty() ? 0 : request.sandbox.limits.largestFile,
  };
  auto child = startedChild(setup);
  if (!child && child.error().step == ChildFailure::Step::root) {
    // Not every system lets ordinary users make namespaces. The rest of the confinement holds without.
    hasNamespaces_ = false;
    setup.root = nullptr;
    child = startedChild(setup);
  }
  if (!child) return failure(description(child.error().step), child.error().error);
  // The child is ours and not reaped: the number cannot have been given away.
  UniqueDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, *child, 0)));
  if (!process) {
    const int error = errno;
    ::kill(*child, SIGKILL);
    reapFailed(*child);
    return failure("cannot watch the process", error);
  }
  return std::make_unique<LinuxChildProcess>(*child, std::move(process), std::move(input.writeEnd),
                                             std::move(output.readEnd), executable->identity);
}

}  // namespace murmel
