#include "LocalModels/QwenServerRun.h"

#include "LocalModels/LocalUnixHTTP.h"
#include "LocalModels/QwenAPIKeyFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace murmel {

namespace {

constexpr int okStatus = 200;

}  // namespace

std::vector<std::string> QwenServerConfiguration::arguments(
    const std::filesystem::path& socketURL, const std::filesystem::path& apiKeyFileURL) const {
  return {"-m",
          model.string(),
          "--host",
          socketURL.string(),
          "--api-key-file",
          apiKeyFileURL.string(),
          "--no-webui",
          "--jinja",
          "--reasoning",
          "off",
          "--reasoning-format",
          "none",
          "--reasoning-budget",
          "0",
          "-c",
          "1024",
          "-np",
          "1",
          "--offline",
          "--log-disable"};
}

QwenServerRun::QwenServerRun(const QwenServerConfiguration& configuration, ProcessLauncher& launcher,
                             const Clock& clock, const WorkerCancellation& cancellation)
    : configuration_(configuration), launcher_(launcher), clock_(clock), cancellation_(cancellation) {}

QwenServerRun::~QwenServerRun() {
  if (process_) process_->terminate(configuration_.limits.terminationGrace);
}

std::expected<std::shared_ptr<const QwenServerSession>, std::string> QwenServerRun::start() {
  auto place = QwenServerPlace::create(configuration_.temporaryDirectory);
  if (!place) return std::unexpected(std::move(place.error()));
  place_.emplace(*std::move(place));
  auto token = QwenAPIKeyFile::makeToken();
  // Gone again on every way out of here: the server has read it when it is ready, or never will.
  auto keyFile = QwenAPIKeyFile::create(token, place_->keyDirectory());
  if (!keyFile) return std::unexpected(std::move(keyFile.error()));
  if (auto launched = launch(keyFile->path()); !launched) return std::unexpected(std::move(launched.error()));
  session_ = std::make_shared<const QwenServerSession>(
      QwenServerSession{place_->socketURL(), std::move(token), process_->identifier()});
  if (auto ready = awaitReadiness(); !ready) return std::unexpected(std::move(ready.error()));
  return session_;
}

std::expected<void, std::string> QwenServerRun::launch(const std::filesystem::path& apiKeyFileURL) {
  const std::unexpected<std::string> wrongIdentity("running inference server identity validation failed");
  if (!configuration_.mayExecute(configuration_.executable)) return wrongIdentity;
  auto launched = launcher_.launch({.executable = configuration_.executable,
                                    .arguments = configuration_.arguments(place_->socketURL(), apiKeyFileURL),
                                    .environment = {}});
  if (!launched) return std::unexpected(std::move(launched.error()));
  process_ = *std::move(launched);
  const auto running = process_->runningIdentity();
  if (!running) return std::unexpected("inference server exited while starting");
  if (*running != process_->launchedIdentity()) return wrongIdentity;
  return {};
}

std::expected<void, std::string> QwenServerRun::awaitReadiness() {
  const auto deadline = clock_.now() + configuration_.limits.readiness;
  while (true) {
    const auto left = deadline - clock_.now();
    if (left <= Duration::zero()) return std::unexpected("inference server did not become ready");
    if (isReady(std::min(left, configuration_.limits.readinessProbe))) return {};
    if (cancellation_.isCancelled()) return std::unexpected("stopped");
    if (outputEnds(configuration_.limits.readinessInterval) || !process_->isRunning())
      return std::unexpected("inference server exited while starting");
  }
}

bool QwenServerRun::isReady(Duration limit) const {
  const WorkerCancellation* const interruption = &cancellation_;
  const auto answer = LocalUnixHTTP(clock_, {&interruption, 1})
                          .request({.socketURL = session_->socketURL,
                                    .token = session_->token,
                                    .method = "GET",
                                    .path = "/health",
                                    .body = std::nullopt,
                                    .timeout = limit,
                                    .server = session_->server});
  return answer && answer->status == okStatus;
}

void QwenServerRun::awaitEnd() {
  while (!cancellation_.isCancelled() && !outputEnds(std::nullopt)) {
  }
}

/// Takes and drops what the server prints, so that it never waits for a reader. True when there will be no
/// more of it, which is how its end is noticed; false after `within` or with the cancellation.
bool QwenServerRun::outputEnds(std::optional<std::chrono::milliseconds> within) {
  std::array<char, 4'096> dropped;  // NOLINT(*-member-init): filled by the read
  const auto deadline = clock_.now() + within.value_or(std::chrono::milliseconds::zero());
  while (!cancellation_.isCancelled()) {
    int limit = -1;
    if (within) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - clock_.now());
      if (left.count() <= 0) return false;
      limit = static_cast<int>(left.count());
    }
    std::array<pollfd, 2> waited{{{process_->output(), POLLIN, 0}, {cancellation_.descriptor(), POLLIN, 0}}};
    const int ready = ::poll(waited.data(), waited.size(), limit);
    if (ready < 0 && errno != EINTR) return true;
    if (ready <= 0 || waited[0].revents == 0) continue;
    const auto count = ::read(process_->output(), dropped.data(), dropped.size());
    if (count == 0 || (count < 0 && errno != EINTR)) return true;
  }
  return false;
}

}  // namespace murmel
