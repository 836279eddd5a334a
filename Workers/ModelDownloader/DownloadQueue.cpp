#include "Workers/ModelDownloader/DownloadQueue.h"

#include "Foundation/Text/Sizes.h"

#include <algorithm>
#include <utility>

#include <fmt/core.h>

namespace murmel::downloader {

namespace {

using State = DownloadJob::State;

constexpr auto progressInterval = std::chrono::milliseconds(250);
constexpr auto longestWait = std::chrono::seconds(60);
constexpr std::size_t longestShownIdentifier = 128;

DownloadFailure storageFailure(const FileError& error) {
  return {error.isDiskFull ? "disk_full" : "storage", error.message, {}};
}

}  // namespace

DownloadQueue::DownloadQueue(Settings settings, const StoreFolder& store, Transport& transport,
                             std::function<void(const Report&)> report)
    : settings_(std::move(settings)), store_(store), transport_(transport), report_(std::move(report)) {}

DownloadQueue::~DownloadQueue() {
  for (const auto& job : jobs_) stop(*job);
}

const ApprovedModelDownload* DownloadQueue::find(std::string_view identifier) const {
  const auto found = std::ranges::find(settings_.manifest, identifier, &ApprovedModelDownload::identifier);
  return found == settings_.manifest.end() ? nullptr : &*found;
}

void DownloadQueue::download(const std::vector<std::string>& identifiers,
                             MRMModelDownloadImportance importance) {
  for (const auto& identifier : identifiers) {
    if (const auto* asset = find(identifier)) {
      add(*asset, importance);
    } else {
      refuse(identifier);
    }
  }
}

void DownloadQueue::add(const ApprovedModelDownload& asset, MRMModelDownloadImportance importance) {
  const auto same = std::ranges::find(jobs_, asset.sha256, [](const auto& job) { return job->sha256(); });
  if (same == jobs_.end()) {
    jobs_.push_back(std::make_unique<DownloadJob>(asset, importance));
    return;
  }
  auto& job = **same;
  if (std::ranges::find(job.assets, &asset) == job.assets.end()) job.assets.push_back(&asset);
  if (importance == MRMModelDownloadImportance::required) job.importance = importance;
}

void DownloadQueue::refuse(const std::string& identifier) {
  report_(RefusedReport{"unknown_identifier", identifier.substr(0, longestShownIdentifier)});
}

void DownloadQueue::cancel(const std::vector<std::string>& identifiers, bool discards) {
  for (const auto& identifier : identifiers) {
    const auto* asset = find(identifier);
    if (asset == nullptr) {
      refuse(identifier);
      continue;
    }
    const auto same = std::ranges::find(jobs_, asset->sha256, [](const auto& job) { return job->sha256(); });
    const bool isUnderWay = same != jobs_.end();
    // The same content may be wanted in another place too.
    if (isUnderWay && (*same)->assets.size() > 1) {
      std::erase((*same)->assets, asset);
    } else if (!isUnderWay || (*same)->assets.front() == asset) {
      if (isUnderWay) {
        stop(**same);
        jobs_.erase(same);
      }
      if (discards) store_.discardPartial(asset->sha256);
    }
    report_(CancelledReport{identifier});
  }
}

void DownloadQueue::stop(DownloadJob& job) {
  if (job.transfer) transport_.stop(*std::exchange(job.transfer, std::nullopt));
  // Nothing was fetched: nothing to keep.
  if (job.partial && job.partial->size() == 0) job.partial->discard();
}

MRMModelDownloadScheduling DownloadQueue::schedulingOf(const DownloadJob& job) const {
  const bool requiredActive = std::ranges::any_of(
      jobs_, [](const auto& other) { return other->importance == MRMModelDownloadImportance::required; });
  return MRMModelDownloadPolicy::scheduling(job.importance, requiredActive, runtimeActive_);
}

Duration DownloadQueue::advance(Instant now) {
  for (const auto& job : jobs_) {
    job->now = now;
    take(*job, now);
  }
  std::erase_if(jobs_, [](const auto& job) { return job->isOver; });
  schedule(now);
  std::erase_if(jobs_, [](const auto& job) { return job->isOver; });

  Duration wait = longestWait;
  for (const auto& job : jobs_) {
    tellProgress(*job, now);
    if (job->state == State::backingOff) wait = std::min<Duration>(wait, job->retryAt - now);
    // Silence is noticed late by a fraction of what counts as silence.
    if (job->state == State::running)
      wait = std::min(wait, std::min<Duration>(progressInterval,
                                               settings_.limits.scaled(settings_.limits.requestTimeout) / 4));
    // Something ended while others were started: look at it at once.
    if (job->end) wait = Duration::zero();
  }
  return std::max(wait, Duration::zero());
}

void DownloadQueue::take(DownloadJob& job, Instant now) {
  if (job.learntTotal && !job.end) {
    job.learntTotal = false;
    if (!hasSpaceFor(job)) return;
  }
  if (job.state != State::running) return;
  if (!job.end) {
    if (job.isSuspended) {
      job.machine->resumed(now);
      return;
    }
    // A body that does not say how long it is must not take the last byte either.
    if (!job.machine->total() && store_.freeBytes() < reservedBytes) {
      (void)hasSpaceFor(job);
      return;
    }
    const auto late = job.machine->overdue(now);
    if (!late) return;
    transport_.stop(*std::exchange(job.transfer, std::nullopt));
    follow(job, job.machine->end(late, now), now);
    return;
  }
  job.transfer.reset();
  const auto end = *std::exchange(job.end, std::nullopt);
  if (job.diskFailure) {
    fail(job, storageFailure(*job.diskFailure));
    return;
  }
  follow(job, job.machine->end(end.error, now), now);
}

void DownloadQueue::follow(DownloadJob& job, const TransferMachine::Next& next, Instant now) {
  if (std::holds_alternative<TransferMachine::Verify>(next)) {
    verify(job, now);
  } else if (const auto* retry = std::get_if<TransferMachine::Retry>(&next)) {
    if (retry->discardsPartial) {
      job.partial->rememberEntityTag({});
      if (const auto emptied = job.partial->truncate(); !emptied)
        return fail(job, storageFailure(emptied.error()));
    }
    job.state = State::backingOff;
    job.retryCause = retry->cause;
    job.retryAt = now + retry->delay;
    job.told.reset();
  } else {
    const auto& failed = std::get<TransferMachine::Fail>(next);
    if (failed.discardsPartial) job.partial->discard();
    fail(job, failed.failure);
  }
}

void DownloadQueue::verify(DownloadJob& job, Instant now) {
  const auto digest = job.partial->sha256();
  if (!digest) return fail(job, storageFailure(digest.error()));
  if (*digest != job.sha256()) return follow(job, job.machine->digestDiffers(), now);
  if (const auto installed = store_.install(*job.partial, job.places()); !installed)
    return fail(job, storageFailure(installed.error()));
  finish(job);
}

void DownloadQueue::finish(DownloadJob& job) {
  for (const auto* asset : job.assets) report_(InstalledReport{std::string(asset->identifier)});
  job.isOver = true;
}

void DownloadQueue::fail(DownloadJob& job, const DownloadFailure& failure) {
  stop(job);
  // Whoever fills the disk gives it back.
  if (failure.reason == "disk_full" && job.partial) job.partial->discard();
  for (const auto* asset : job.assets)
    report_(FailedReport{std::string(asset->identifier), failure.reason, failure.message});
  job.isOver = true;
}

void DownloadQueue::schedule(Instant now) {
  for (const auto& job : jobs_) {
    const auto scheduling = schedulingOf(*job);
    if (job->transfer && job->priority != scheduling.priority)
      transport_.prioritise(*job->transfer, scheduling.priority);
    job->priority = scheduling.priority;
    if (job->isSuspended != scheduling.suspended) {
      job->isSuspended = scheduling.suspended;
      job->told.reset();
      if (job->transfer) transport_.pause(*job->transfer, job->isSuspended);
      if (job->machine) job->machine->resumed(now);
    }
    if (job->state == State::backingOff && job->retryAt <= now) job->state = State::waiting;
  }
  makeRoom(now);
}

void DownloadQueue::makeRoom(Instant now) {
  std::vector<DownloadJob*> candidates;
  for (const auto& job : jobs_) {
    if (!job->isOver && job->state != State::backingOff &&
        !(job->state == State::waiting && job->isSuspended))
      candidates.push_back(job.get());
  }
  // The more important first; among equals those that run keep running.
  std::ranges::stable_sort(candidates, [](const auto* a, const auto* b) {
    if (a->priority != b->priority) return a->priority > b->priority;
    return a->state == State::running && b->state != State::running;
  });
  const auto slots =
      std::min<std::size_t>(MRMModelDownloadPolicy::maximumConnectionsPerHost, candidates.size());
  for (std::size_t i = slots; i < candidates.size(); ++i) {
    auto& job = *candidates[i];
    if (job.state != State::running || job.end) continue;
    transport_.stop(*std::exchange(job.transfer, std::nullopt));
    job.state = State::waiting;
  }
  for (std::size_t i = 0; i < slots; ++i) {
    if (candidates[i]->state == State::waiting) start(*candidates[i], now);
  }
}

void DownloadQueue::start(DownloadJob& job, Instant now) {
  if (!std::exchange(job.wasLookedFor, true) && installFromStore(job)) return;
  if (!job.partial) {
    auto partial = store_.partial(job.sha256());
    if (!partial) return fail(job, storageFailure(partial.error()));
    job.partial = *std::move(partial);
    if (job.partial->size() > 0) {
      report_(ProgressReport{
          std::string(job.assets.front()->identifier), "checking", job.partial->size(), job.total(), {}});
      if (const auto read = job.partial->catchUp(); !read) return fail(job, storageFailure(read.error()));
    }
    const auto byteCount = job.assets.front()->byteCount;
    if (job.partial->size() > byteCount.value_or(job.assets.front()->largest)) {
      if (const auto emptied = job.partial->truncate(); !emptied)
        return fail(job, storageFailure(emptied.error()));
    }
    job.machine.emplace(byteCount, job.partial->size(), job.partial->entityTag(), settings_.limits,
                        job.assets.front()->largest);
  }
  if (!hasSpaceFor(job)) return;
  const auto begun = job.machine->begin(now);
  if (std::holds_alternative<TransferMachine::Verify>(begun)) return verify(job, now);
  const auto& ask = std::get<TransferMachine::Ask>(begun);
  job.end.reset();
  job.state = State::running;
  job.told.reset();
  job.transfer = transport_.start({.url = settings_.address(*job.assets.front()),
                                   .offset = ask.offset,
                                   .ifRange = ask.ifRange,
                                   .priority = job.priority},
                                  job);
}

bool DownloadQueue::installFromStore(DownloadJob& job) {
  std::optional<std::string> source;
  std::vector<std::string> missing = job.places();
  for (const auto& asset : settings_.manifest) {
    if (asset.sha256 != job.sha256()) continue;
    const auto place = asset.storePath();
    if (!store_.holds(place, asset.sha256, asset.byteCount)) continue;
    source = place;
    std::erase(missing, place);
  }
  if (!source) return false;
  if (const auto copied = store_.copy(*source, missing); !copied) {
    fail(job, storageFailure(copied.error()));
    return true;
  }
  // What an interrupted transfer of the same content left is of no use any more.
  store_.discardPartial(job.sha256());
  finish(job);
  return true;
}

bool DownloadQueue::hasSpaceFor(DownloadJob& job) {
  std::int64_t needed = reservedBytes;
  for (const auto& other : jobs_) {
    if (other.get() != &job && (other->isOver || other->priority < job.priority)) continue;
    const auto total = other->total().value_or(0);
    const auto arrived = other->machine ? other->received() : store_.partialBytes(other->sha256());
    const auto copies = static_cast<std::int64_t>(other->assets.size()) - 1;
    needed += std::max<std::int64_t>(total - arrived, 0) + copies * total;
  }
  const auto available = store_.freeBytes();
  if (needed <= available) return true;
  fail(job, {"disk_full",
             fmt::format("There is not enough disk space: {} are needed, {} are free.", megabytes(needed),
                         megabytes(available)),
             {}});
  return false;
}

void DownloadQueue::tellProgress(DownloadJob& job, Instant now) {
  if (job.told && now - *job.told < progressInterval) return;
  if (job.told && job.state != State::running) return;  // nothing moves while it waits
  job.told = now;
  const auto state = job.isSuspended                  ? "suspended"
                     : job.state == State::running    ? "downloading"
                     : job.state == State::backingOff ? "retrying"
                                                      : "waiting";
  for (const auto* asset : job.assets)
    report_(ProgressReport{std::string(asset->identifier), state, job.received(), job.total(),
                           job.state == State::backingOff ? job.retryCause : std::string()});
}

}  // namespace murmel::downloader
