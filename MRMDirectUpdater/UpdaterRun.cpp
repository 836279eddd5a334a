#include "MRMDirectUpdater/UpdaterRun.h"

#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"
#include "Foundation/WriteAll.h"
#include "MRMUpdatePolicy/UpdateFeed.h"

#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace murmel {

namespace {

constexpr std::size_t longestLine = base64::encodedSize(largestFeed) + 1'024;
constexpr const char* endedEarly = "The updater ended unexpectedly.";

}  // namespace

UpdaterRun::UpdaterRun(Executor& executor, ProcessLauncher& launcher, const ProcessRequest& request,
                       const std::string& order, Handlers handlers)
    : executor_(executor), handlers_(std::move(handlers)), lines_(longestLine) {
  auto launched = launcher.launch(request);
  std::string problem;
  if (!launched) problem = "The updater could not be started: " + launched.error();
  // The order is below the size that a process which has just started takes from its pipe piece by piece.
  else if (!order.empty() && !writeAll((*launched)->input(), order))
    problem = endedEarly;
  if (!problem.empty()) {
    executor_.post([this, problem, alive = std::weak_ptr(alive_)] {
      if (!alive.expired()) finish(std::unexpected(problem));
    });
    return;
  }
  process_ = *std::move(launched);
  ::fcntl(process_->output(), F_SETFL, ::fcntl(process_->output(), F_GETFL) | O_NONBLOCK);
  output_ = executor_.watchReadable(process_->output(), [this] { receive(); });
}

void UpdaterRun::receive() {
  std::array<char, 16'384> bytes{};
  while (true) {
    const auto count = ::read(process_->output(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EAGAIN) return;
    if (count <= 0) return finish(std::unexpected(endedEarly));
    lines_.append({bytes.data(), static_cast<std::size_t>(count)});
    while (const auto line = lines_.next()) {
      if (!take(line->text)) return;
    }
  }
}

bool UpdaterRun::take(std::string_view line) {
  const auto object = parsedJson(line);
  const auto event = object["event"].textOrEmpty();
  if (event == "progress") {
    const UpdateProgress progress{object["received"].integer().value_or(0), object["total"].integer(),
                                  object["message"].textOrEmpty()};
    if (handlers_.progress) handlers_.progress(progress);
    return true;
  }
  if (event == "failed") return finish(std::unexpected(object["message"].textOrEmpty())), false;
  if (event == "done") return finish(std::string()), false;
  if (event != "feed") return true;
  const auto feed = base64::decoded(object["feed"].textOrEmpty());
  if (!feed) return finish(std::unexpected(endedEarly)), false;
  return finish(std::string(feed->begin(), feed->end())), false;
}

void UpdaterRun::finish(Result result) {
  output_.reset();
  process_.reset();
  // The handler may destroy this.
  const auto done = std::exchange(handlers_.done, nullptr);
  if (done) done(std::move(result));
}

}  // namespace murmel
