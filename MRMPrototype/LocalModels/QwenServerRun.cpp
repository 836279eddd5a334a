#include "LocalModels/QwenServerRun.h"

#include "LocalModels/LocalUnixHTTP.h"
#include "LocalModels/QwenAPIKeyFile.h"
#include "LocalModels/QwenChat.h"
#include "WorkerProcess/ProcessEnd.h"

#include <algorithm>
#include <array>
#include <utility>

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

QwenServerRun::QwenServerRun(QwenServerConfiguration configuration, ProcessLauncher& launcher,
                             const Clock& clock, const WorkerCancellation& cancellation)
    : configuration_(std::move(configuration)),
      launcher_(launcher),
      clock_(clock),
      cancellation_(cancellation) {}

QwenServerRun::~QwenServerRun() {
  if (process_) process_->terminate(configuration_.limits.terminationGrace);
}

std::expected<void, std::string> QwenServerRun::start() {
  auto place = QwenServerPlace::create(configuration_.temporaryDirectory);
  if (!place) return std::unexpected(std::move(place.error()));
  place_.emplace(*std::move(place));
  token_ = QwenAPIKeyFile::makeToken();
  // Gone again on every way out of here: the server has read it when it is ready, or never will.
  auto keyFile = QwenAPIKeyFile::create(token_, place_->keyDirectory());
  if (!keyFile) return std::unexpected(std::move(keyFile.error()));
  if (auto launched = launch(keyFile->path()); !launched) return launched;
  return awaitReadiness();
}

std::expected<void, std::string> QwenServerRun::launch(const std::filesystem::path& apiKeyFileURL) {
  const std::unexpected<std::string> wrongIdentity("running inference server identity validation failed");
  if (!configuration_.mayExecute(configuration_.executable)) return wrongIdentity;
  auto launched = launcher_.launch({.executable = configuration_.executable,
                                    .arguments = configuration_.arguments(place_->socketURL(), apiKeyFileURL),
                                    // Its threads wait for each other thousands of times a second: shortly
                                    // spinning, then asleep, since the speech worker computes beside them.
                                    .environment = {"GOMP_SPINCOUNT=3000"},
                                    .sandbox = {.readable = {configuration_.model, apiKeyFileURL},
                                                .socketFolder = place_->socketURL().parent_path(),
                                                .network = ProcessSandbox::Network::unixServer}});
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
    if (awaitProcessEnd(*process_, cancellation_, configuration_.limits.readinessInterval, true))
      return std::unexpected("inference server exited while starting");
  }
}

bool QwenServerRun::isReady(Duration limit) const {
  const WorkerCancellation* const interruption = &cancellation_;
  const auto answer = LocalUnixHTTP(clock_, {&interruption, 1})
                          .request({.socketURL = place_->socketURL(),
                                    .token = token_,
                                    .method = "GET",
                                    .path = "/health",
                                    .body = std::nullopt,
                                    .timeout = limit,
                                    .server = process_->identifier()});
  return answer && answer->status == okStatus;
}

void QwenServerRun::awaitEnd() {
  awaitProcessEnd(*process_, cancellation_, std::nullopt, /*dropsOutput=*/true);
}

std::expected<std::string, ModelProcess::Failure> QwenServerRun::ask(const std::string& text,
                                                                     Instant deadline,
                                                                     const WorkerCancellation& patience) {
  const std::array<const WorkerCancellation*, 2> interruptions{&patience, &cancellation_};
  const auto body = QwenChat::requestBody(text);
  const auto answer = LocalUnixHTTP(clock_, interruptions)
                          .request({.socketURL = place_->socketURL(),
                                    .token = token_,
                                    .method = "POST",
                                    .path = "/v1/chat/completions",
                                    .body = body,
                                    .timeout = deadline - clock_.now(),
                                    .server = process_->identifier()});
  if (!answer && answer.error() == LocalUnixHTTP::Error::timedOut) return std::unexpected(Failure::timedOut);
  if (!answer || answer->status != okStatus) return std::unexpected(Failure::refused);
  const auto content = QwenChat::answer(answer->body);
  auto said = content ? QwenChat::sanitizeResponse(*content) : std::nullopt;
  if (!said) return std::unexpected(Failure::refused);
  return *std::move(said);
}

}  // namespace murmel
