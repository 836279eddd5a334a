#include "Platform/Fake/FakeProcessLauncher.h"

#include "Foundation/WriteAll.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace murmel {

namespace {

struct Pipe {
  UniqueDescriptor readEnd;
  UniqueDescriptor writeEnd;
};

Pipe makePipe() {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe for a fake child");
  return {UniqueDescriptor(ends[0]), UniqueDescriptor(ends[1])};
}

class FakeChildProcess final : public ChildProcess {
 public:
  FakeChildProcess(pid_t identifier, ExecutableIdentity launched, ExecutableIdentity running,
                   std::shared_ptr<std::atomic<int>> count)
      : identifier_(identifier), launched_(launched), running_(running), count_(std::move(count)) {
    ++*count_;
  }
  ~FakeChildProcess() override {
    FakeChildProcess::terminate(std::chrono::milliseconds::zero());
    --*count_;
  }

  void begin(const FakeProcessLauncher::Program& program, std::vector<std::string> arguments) {
    auto input = makePipe();
    auto output = makePipe();
    input_ = std::move(input.writeEnd);
    output_ = std::move(output.readEnd);
    auto side = std::make_unique<FakeChildSide>(std::move(input.readEnd), std::move(output.writeEnd),
                                                std::move(arguments));
    thread_ = std::thread([this, program, side = std::move(side)]() mutable {
      // A real child is killed by this signal; here it would be the test.
      sigset_t pipeSignal;
      ::sigemptyset(&pipeSignal);
      ::sigaddset(&pipeSignal, SIGPIPE);
      ::pthread_sigmask(SIG_BLOCK, &pipeSignal, nullptr);
      program(*side);
      side.reset();  // a child's pipes close before it is gone
      ended_ = true;
      ::eventfd_write(end_.get(), 1);
    });
  }

  [[nodiscard]] pid_t identifier() const override { return identifier_; }
  [[nodiscard]] int input() const override { return input_.get(); }
  [[nodiscard]] int output() const override { return output_.get(); }
  [[nodiscard]] int endDescriptor() const override { return end_.get(); }
  void closeInput() override { input_.reset(); }
  [[nodiscard]] bool isRunning() override { return !ended_; }
  void terminate(std::chrono::milliseconds) override {
    input_.reset();
    output_.reset();
    const std::lock_guard lock(joining_);
    if (thread_.joinable()) thread_.join();
  }
  [[nodiscard]] std::expected<ExecutableIdentity, std::string> runningIdentity() const override {
    if (ended_) return std::unexpected("the process has ended");
    return running_;
  }
  [[nodiscard]] ExecutableIdentity launchedIdentity() const override { return launched_; }

 private:
  pid_t identifier_;
  ExecutableIdentity launched_;
  ExecutableIdentity running_;
  std::shared_ptr<std::atomic<int>> count_;
  UniqueDescriptor input_;
  UniqueDescriptor output_;
  UniqueDescriptor end_{::eventfd(0, EFD_CLOEXEC)};
  std::atomic<bool> ended_ = false;
  std::mutex joining_;
  std::thread thread_;
};

}  // namespace

FakeChildSide::FakeChildSide(UniqueDescriptor input, UniqueDescriptor output,
                             std::vector<std::string> arguments)
    : input_(std::move(input)), output_(std::move(output)), arguments_(std::move(arguments)) {}

std::optional<std::string> FakeChildSide::readLine() {
  while (true) {
    if (const auto feed = buffer_.find('\n'); feed != std::string::npos) {
      auto line = buffer_.substr(0, feed);
      buffer_.erase(0, feed + 1);
      return line;
    }
    std::array<char, 4'096> chunk{};
    const auto count = ::read(input_.get(), chunk.data(), chunk.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      if (buffer_.empty()) return std::nullopt;
      return std::exchange(buffer_, {});
    }
    buffer_.append(chunk.data(), static_cast<std::size_t>(count));
  }
}

bool FakeChildSide::write(std::string_view text) {
  return writeAll(output_.get(), text);
}

void FakeProcessLauncher::install(const std::filesystem::path& executable, Program program) {
  const std::lock_guard lock(mutex_);
  const ExecutableIdentity identity{1, installed_.size() + 1};
  installed_[executable] = {std::move(program), identity, false};
}

void FakeProcessLauncher::exchangeAfterLaunch(const std::filesystem::path& executable) {
  const std::lock_guard lock(mutex_);
  installed_.at(executable).isExchanged = true;
}

std::expected<std::unique_ptr<ChildProcess>, std::string> FakeProcessLauncher::launch(
    const ProcessRequest& request) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(request);
  if (!request.executable.is_absolute()) return std::unexpected("the path of the executable is not absolute");
  const auto found = installed_.find(request.executable);
  if (found == installed_.end())
    return std::unexpected("cannot open the executable: No such file or directory");
  const auto& [program, identity, isExchanged] = found->second;
  const ExecutableIdentity other{identity.device, identity.inode + 1'000};
  auto child = std::make_unique<FakeChildProcess>(nextIdentifier_++, identity, isExchanged ? other : identity,
                                                  childCount_);
  child->begin(program, request.arguments);
  return child;
}

std::vector<ProcessRequest> FakeProcessLauncher::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

}  // namespace murmel
