#include "MRMDirectUpdater/DirectUpdater.h"

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Timers.h"
#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"

#include <chrono>
#include <utility>

namespace murmel {

namespace {

using Phase = UpdateStatus::Phase;

/// How often a waiting installation asks whether it may begin.
constexpr Duration askAgain = std::chrono::seconds(1);
constexpr const char* stillGood = "The new version does not start on this computer; the one before was kept.";

}  // namespace

DirectUpdater::DirectUpdater(Configuration configuration, Ports ports)
    : configuration_(std::move(configuration)),
      ports_(std::move(ports)),
      memory_(UpdateMemory::read(ports_.files, configuration_.memory)) {
  status_.lastCheck = memory_.lastCheck;
}

DirectUpdater::~DirectUpdater() = default;

std::string DirectUpdater::whyNot() const {
  if (configuration_.road == UpdateRoad::store)
    return "New versions come from the store that this app came from.";
  if (configuration_.fingerprint.empty())
    return "This build belongs to no release, so there is nothing that could update it.";
  if (configuration_.road == UpdateRoad::none)
    return "This copy was built here; build it again to update it.";
  return {};
}

std::int64_t DirectUpdater::secondsNow() const {
  return std::chrono::duration_cast<std::chrono::seconds>(ports_.clock.wallNow().time_since_epoch()).count();
}

void DirectUpdater::show(Phase phase, std::string message) {
  status_.phase = phase;
  status_.message = std::move(message);
  changed_.emit();
}

void DirectUpdater::remember() {
  status_.lastCheck = memory_.lastCheck;
  // A check too many is the worst that follows from a memory that cannot be kept.
  (void)memory_.write(ports_.files, configuration_.memory);
}

void DirectUpdater::check() {
  if (status_.isUnderWay() || status_.phase == Phase::installed) return;
  if (auto reason = whyNot(); !reason.empty()) return show(Phase::failed, std::move(reason));
  status_.release.reset();
  show(Phase::checking);
  tasks_.start(look());
}

Task<void> DirectUpdater::look() {
  // Remembered before it is made: a check that kills the application is not made at every start. Read again,
  // since another process may have looked meanwhile.
  memory_ = UpdateMemory::read(ports_.files, configuration_.memory);
  memory_.lastCheck = secondsNow();
  remember();
  auto fetching = run("feed", {});
  auto fetched = co_await fetching;
  if (!fetched) {
    show(Phase::failed, std::move(fetched.error()));
    co_return;
  }
  const auto feed = readUpdateFeed(*fetched, configuration_.fingerprint, secondsNow(), memory_.highestSerial);
  if (!feed) {
    show(Phase::failed, std::string(sentence(feed.error())));
    co_return;
  }
  memory_.highestSerial = feed->serial;
  remember();
  feed_ = *std::move(fetched);
  status_.release = releaseFor(*feed, configuration_.subject);
  show(status_.release ? Phase::available : Phase::upToDate);
}

void DirectUpdater::followSchedule() {
  schedule_.reset();
  if (whyNot().empty()) lookAtSchedule();
}

void DirectUpdater::lookAtSchedule() {
  memory_ = UpdateMemory::read(ports_.files, configuration_.memory);
  auto facts = ports_.circumstances();
  facts.lastCheck = memory_.lastCheck;
  facts.now = secondsNow();
  const auto decision = scheduleUpdateCheck(facts);
  if (decision.kind == UpdateScheduleDecision::Kind::never) return;
  if (decision.forgetsLastCheck) {
    memory_.lastCheck = facts.now;
    remember();
  }
  // An update that is known or under way is not looked for again.
  const bool isOpen =
      status_.phase == Phase::idle || status_.phase == Phase::upToDate || status_.phase == Phase::failed;
  if (decision.kind == UpdateScheduleDecision::Kind::check && isOpen) check();
  const auto wait =
      decision.kind == UpdateScheduleDecision::Kind::wait ? decision.seconds : updateCheckInterval;
  schedule_ = ports_.executor.after(std::chrono::seconds(wait), [this] { lookAtSchedule(); });
}

void DirectUpdater::install(bool whenIdle) {
  if (configuration_.road != UpdateRoad::direct || !status_.release || status_.isUnderWay()) return;
  status_.progress = {};
  show(Phase::downloading);
  tasks_.start(bring(*status_.release, whenIdle));
}

Task<void> DirectUpdater::bring(UpdateRelease release, bool whenIdle) {
  auto downloading = run("download", orderFor(release));
  auto downloaded = co_await downloading;
  if (!downloaded) {
    show(Phase::failed, std::move(downloaded.error()));
    co_return;
  }
  show(Phase::waiting);
  while ((whenIdle && !ports_.isIdle()) || !ports_.beginInstallation()) {
    auto waiting = sleepFor(ports_.executor, askAgain);
    co_await waiting;
  }
  // From here on nobody can stop it half way.
  show(Phase::installing);
  installation_.start([](DirectUpdater* self, UpdateRelease wanted) -> Task<void> {
    auto exchanging = self->exchangeVersions(std::move(wanted));
    auto exchanged = co_await exchanging;
    if (!exchanged) {
      self->ports_.endInstallation();
      self->show(Phase::failed, std::move(exchanged.error()));
      co_return;
    }
    self->show(Phase::installed);
    if (self->ports_.restart) self->ports_.restart();
  }(this, release));
}

Task<std::expected<void, std::string>> DirectUpdater::exchangeVersions(UpdateRelease release) {
  const auto order = orderFor(release);
  auto unpacking = run("unpack", order);
  auto unpacked = co_await unpacking;
  if (!unpacked) co_return std::unexpected(std::move(unpacked.error()));
  auto trying = ports_.startsUp(configuration_.root / ".new" / "bin" / "murmel");
  const bool starts = co_await trying;
  if (!starts) co_return std::unexpected(std::string(stillGood));
  auto exchanging = run("exchange", {});
  auto exchanged = co_await exchanging;
  if (!exchanged) co_return std::unexpected(std::move(exchanged.error()));
  // Once more where it is now: paths may be compiled in.
  auto tryingAgain = ports_.startsUp(configuration_.root / currentFolder / "bin" / "murmel");
  const bool stillStarts = co_await tryingAgain;
  if (stillStarts) co_return std::expected<void, std::string>();
  auto restoring = run("restore", {});
  auto restored = co_await restoring;
  if (!restored) co_return std::unexpected(std::move(restored.error()));
  co_return std::unexpected(std::string(stillGood));
}

std::string DirectUpdater::orderFor(const UpdateRelease& release) const {
  const std::span feed(reinterpret_cast<const std::uint8_t*>(feed_.data()), feed_.size());
  // Not the highest serial: the feed that the user has seen is good until it expires.
  const Json order{{"feed", base64::encoded(feed)}, {"sha256", release.sha256}, {"serial", 0U}};
  return jsonText(order) + '\n';
}

Task<UpdaterRun::Result> DirectUpdater::run(std::string task, std::string order) {
  if (configuration_.mayExecute && !configuration_.mayExecute(configuration_.executable))
    co_return std::unexpected(std::string("The updater is missing from the app or is not the app's own."));
  ProcessRequest request{.executable = configuration_.executable,
                         .arguments = {task},
                         .environment = configuration_.environment,
                         .sandbox = {.readable = configuration_.readable}};
  if (task == "feed" || task == "download") request.sandbox.network = ProcessSandbox::Network::internet;
  if (task != "feed") request.sandbox.writable = {configuration_.root};
  if (task != "feed") {
    request.arguments.emplace_back("--root");
    request.arguments.push_back(configuration_.root.string());
  }
  request.arguments.insert(request.arguments.end(), configuration_.arguments.begin(),
                           configuration_.arguments.end());
  auto ended = makeOneShot<UpdaterRun::Result>();
  auto sender = std::make_shared<OneShotSender<UpdaterRun::Result>>(std::move(ended.sender));
  run_ = std::make_unique<UpdaterRun>(
      ports_.executor, ports_.launcher, request, order,
      UpdaterRun::Handlers{.progress =
                               [this](const UpdateProgress& progress) {
                                 status_.progress = progress;
                                 changed_.emit();
                               },
                           .done = [sender](UpdaterRun::Result result) { sender->send(std::move(result)); }});
  const auto result = co_await ended.receiver;
  run_.reset();
  if (!result) co_return std::unexpected(std::string("The update was stopped."));
  co_return *result;
}

void DirectUpdater::cancel() {
  if (status_.phase != Phase::checking && status_.phase != Phase::downloading &&
      status_.phase != Phase::waiting)
    return;
  tasks_.cancelAll();
  run_.reset();
  show(status_.release ? Phase::available : Phase::idle);
}

}  // namespace murmel
