#include "Platform/Linux/Clipboard/ClipboardKeeperProcess.h"

#include "Foundation/Crypto/Wipe.h"
#include "Foundation/Registration.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <string_view>
#include <utility>

#include <poll.h>
#include <pthread.h>
#include <unistd.h>

namespace murmel {

namespace {

/// A keeper that takes or answers nothing for so long hangs.
constexpr int patienceMilliseconds = 1'000;
/// Confined and connected it is within 100 ms; a machine that is busy takes longer, and without it the words
/// would be lost with the application.
constexpr int startMilliseconds = 5'000;
/// Contents are replaced by others within milliseconds. A keeper that would have to start again would leave a
/// gap in which the words end with the application.
constexpr auto idleBeforeEnd = std::chrono::seconds(2);

bool isReady(int descriptor, short events, int milliseconds = patienceMilliseconds) {
  pollfd wait{descriptor, events, 0};
  return ::poll(&wait, 1, milliseconds) == 1;
}

std::string valueOf(const std::vector<std::string>& environment, std::string_view name) {
  for (const auto& variable : environment)
    if (variable.starts_with(name)) return variable.substr(name.size());
  return {};
}

/// "localhost:10.0", as behind ssh: the display server is spoken to over the network.
ProcessSandbox::Network networkToTheServer(const std::vector<std::string>& environment) {
  const auto display = valueOf(environment, "DISPLAY=");
  const auto host = display.substr(0, std::min(display.rfind(':'), display.size()));
  const bool isLocal = host.empty() || host == "unix" || host.starts_with('/') || host.starts_with("unix/");
  return isLocal || !valueOf(environment, "WAYLAND_DISPLAY=").empty() ? ProcessSandbox::Network::unixOnly
                                                                      : ProcessSandbox::Network::internet;
}

/// The sockets of the display server that the variables name, and what the user proves himself there with.
std::vector<std::filesystem::path> waysToTheServer(const std::vector<std::string>& environment) {
  const auto value = [&](std::string_view name) { return valueOf(environment, name); };
  std::vector<std::filesystem::path> ways;
  if (const auto display = value("WAYLAND_DISPLAY="); !display.empty())
    ways.push_back(std::filesystem::path(value("XDG_RUNTIME_DIR=")) / display);
  const auto display = value("DISPLAY=");
  if (const auto colon = display.rfind(':'); colon != std::string::npos) {
    const auto number = display.substr(colon + 1);
    ways.push_back("/tmp/.X11-unix/X" + number.substr(0, number.find('.')));
    const auto authority = value("XAUTHORITY=");
    ways.emplace_back(authority.empty() ? value("HOME=") + "/.Xauthority" : authority);
  }
  return ways;
}

}  // namespace

ClipboardKeeperProcess::ClipboardKeeperProcess(ProcessLauncher& launcher, Configuration configuration)
    : launcher_(launcher), configuration_(std::move(configuration)), thread_([this] { run(); }) {}

ClipboardKeeperProcess::~ClipboardKeeperProcess() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void ClipboardKeeperProcess::keep(SharedSnapshot contents, std::uint32_t ownedSince) {
  Kept kept{std::move(contents), ownedSince};
  const std::lock_guard lock(mutex_);
  // A few words are with the keeper before anybody can read them here, so that no end of ours comes in
  // between.
  if (!works_ && tellAtOnce(kept)) {
    news_.reset();
    return;
  }
  news_ = std::move(kept);
  changed_.notify_all();
}

void ClipboardKeeperProcess::forget() {
  const std::lock_guard lock(mutex_);
  // After a hand-over it is the keeper who has taken the clipboard from us.
  if (handOver_ != HandOver::none) return;
  news_ = Kept{};
  changed_.notify_all();
}

bool ClipboardKeeperProcess::handOver(Duration limit) {
  std::unique_lock lock(mutex_);
  handOver_ = HandOver::wanted;
  changed_.notify_all();
  changed_.wait_for(lock, limit, [this] { return handOver_ != HandOver::wanted; });
  return handOver_ == HandOver::done;
}

void ClipboardKeeperProcess::run() {
  pthread_setname_np(pthread_self(), "murmel-keeper");
  // A keeper that has gone shows as an error of the write.
  sigset_t pipe;
  ::sigemptyset(&pipe);
  ::sigaddset(&pipe, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
  std::unique_lock lock(mutex_);
  const auto hasNews = [this] { return news_ || handOver_ == HandOver::wanted || ending_; };
  while (true) {
    const bool isIdle = process_ && keepsNothing_ && !changed_.wait_for(lock, idleBeforeEnd, hasNews);
    if (isIdle && keepsNothing_) work(lock, [this] { endKeeper(); });
    changed_.wait(lock, hasNews);
    if (auto news = std::exchange(news_, std::nullopt)) {
      work(lock, [&] { tell(*news); });
    } else if (handOver_ == HandOver::wanted) {
      bool taken = false;
      work(lock, [&] { taken = take(); });
      handOver_ = taken ? HandOver::done : HandOver::failed;
      changed_.notify_all();
    } else {
      break;
    }
  }
  process_.reset();
}

template <class Work>
void ClipboardKeeperProcess::work(std::unique_lock<std::mutex>& lock, const Work& perform) {
  works_ = true;
  lock.unlock();
  perform();
  lock.lock();
  works_ = false;
}

/// False when that could take a while, or there is no keeper yet.
bool ClipboardKeeperProcess::tellAtOnce(const Kept& kept) {
  std::size_t size = 0;
  for (const auto& item : kept.contents->items)
    for (const auto& value : item.values) size += value.data.size();
  if (!process_ || size > PIPE_BUF) return false;
  auto bytes = ClipboardOrder{ClipboardOrder::Kind::keep, kept.ownedSince, *kept.contents}.encoded();
  const Registration wiping([&bytes] { wipe(bytes); });
  // What a pipe takes at once, as a whole.
  pollfd pipe{process_->input(), POLLOUT, 0};
  if (bytes.size() > PIPE_BUF || ::poll(&pipe, 1, 0) != 1 || pipe.revents != POLLOUT) return false;
  const bool isTold =
      ::write(process_->input(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  if (isTold) keepsNothing_ = false;
  return isTold;
}

void ClipboardKeeperProcess::tell(const Kept& kept) {
  keepsNothing_ = !kept.contents;
  if (!kept.contents) {
    if (process_ && !send({})) process_.reset();
    return;
  }
  const ClipboardOrder order{ClipboardOrder::Kind::keep, kept.ownedSince, *kept.contents};
  if (process_ && send(order)) return;
  // There is none yet, or it has died.
  if (!start() || !send(order)) process_.reset();
}

void ClipboardKeeperProcess::endKeeper() {
  // Told to keep nothing it ends with its pipe.
  process_->closeInput();
  process_.reset();
}

bool ClipboardKeeperProcess::start() {
  process_.reset();
  if (!configuration_.mayExecute(configuration_.executable)) return false;
  auto started = launcher_.launch({.executable = configuration_.executable,
                                   .arguments = {},
                                   .environment = configuration_.environment,
                                   .sandbox = {.readable = waysToTheServer(configuration_.environment),
                                               .network = networkToTheServer(configuration_.environment),
                                               .startsCopies = true}});
  if (!started) return false;
  process_ = *std::move(started);
  // It speaks once it has detached itself and can serve: from then on our end is no end to it.
  return answers('r', startMilliseconds);
}

bool ClipboardKeeperProcess::send(const ClipboardOrder& order) {
  auto bytes = order.encoded();
  const Registration wiping([&bytes] { wipe(bytes); });
  std::string_view rest(bytes);
  while (!rest.empty()) {
    if (!isReady(process_->input(), POLLOUT)) return false;
    // At most what a pipe surely takes: a larger write would block where nobody reads.
    const auto count = ::write(process_->input(), rest.data(), std::min<std::size_t>(rest.size(), PIPE_BUF));
    if (count < 0 && errno != EINTR && errno != EAGAIN) return false;
    if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool ClipboardKeeperProcess::take() {
  return process_ && !keepsNothing_ && send({ClipboardOrder::Kind::take, 0, {}}) &&
         answers('y', patienceMilliseconds);
}

bool ClipboardKeeperProcess::answers(char expected, int milliseconds) {
  char answer = 0;
  if (!isReady(process_->output(), POLLIN, milliseconds)) return false;
  // NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection): whoever asks has let go of the lock
  return ::read(process_->output(), &answer, 1) == 1 && answer == expected;
}

}  // namespace murmel
