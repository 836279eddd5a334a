#include "Models/ModelDownloadClient.h"

#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Models/ModelStoreLayout.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace murmel {

namespace {

using State = ModelDownloadStatus::State;

constexpr std::size_t longestLine = std::size_t{64} * 1'024;

std::optional<State> stateFor(std::string_view word) {
  if (word == "waiting") return State::waiting;
  if (word == "checking") return State::checking;
  if (word == "downloading") return State::downloading;
  if (word == "suspended") return State::suspended;
  if (word == "retrying") return State::retrying;
  return std::nullopt;
}

}  // namespace

ModelDownloadClient::ModelDownloadClient(Executor& executor, ProcessLauncher& launcher,
                                         Configuration configuration)
    : executor_(executor),
      launcher_(launcher),
      configuration_(std::move(configuration)),
      lines_(longestLine) {}

ModelDownloadClient::~ModelDownloadClient() = default;

void ModelDownloadClient::download(const std::vector<std::string>& identifiers,
                                   MRMModelDownloadImportance importance) {
  deaths_ = 0;
  for (const auto& identifier : identifiers) {
    const auto [entry, isNew] = wanted_.try_emplace(identifier);
    auto& wanted = entry->second;
    const bool isRequiredAlready =
        !isNew && !wanted.status.isOver() && wanted.importance == MRMModelDownloadImportance::required;
    if (!isRequiredAlready) wanted.importance = importance;
    set(identifier, {});
  }
  // A process that has just been started is told of everything that is wanted.
  if (process_ && !isClosing_) {
    send(downloader_command::download(identifiers, importance));
  } else {
    ensureRunning();
  }
}

void ModelDownloadClient::stop(const std::vector<std::string>& identifiers, bool discard) {
  if (process_ && !isClosing_) {
    send(downloader_command::cancel(identifiers, discard));
  } else if (discard) {
    discardOnDisk(identifiers);
  }
  for (const auto& identifier : identifiers) {
    const auto found = wanted_.find(identifier);
    if (found == wanted_.end() || found->second.status.isOver()) continue;
    auto status = found->second.status;
    status.state = State::cancelled;
    status.message.clear();
    set(identifier, std::move(status));
  }
  if (!isActive()) restart_.reset();
}

void ModelDownloadClient::discardOnDisk(const std::vector<std::string>& identifiers) const {
  const auto folder = configuration_.store / partialDownloadsFolder;
  std::error_code error;
  for (const auto& identifier : identifiers) {
    const auto* asset = MRMDownloadManifest::asset(identifier);
    if (asset == nullptr) continue;
    for (const auto* suffix : {".part", ".etag"})
      std::filesystem::remove(folder / std::string(asset->sha256).append(suffix), error);
  }
  std::filesystem::remove(folder, error);  // Only when it is empty.
}

void ModelDownloadClient::setRuntimeActive(bool active) {
  if (std::exchange(runtimeActive_, active) == active) return;
  if (process_ && !isClosing_) send(downloader_command::runtime(active));
}

std::optional<ModelDownloadStatus> ModelDownloadClient::status(const std::string& identifier) const {
  const auto found = wanted_.find(identifier);
  return found == wanted_.end() ? std::nullopt : std::optional(found->second.status);
}

bool ModelDownloadClient::isActive() const {
  return std::ranges::any_of(wanted_, [](const auto& entry) { return !entry.second.status.isOver(); });
}

void ModelDownloadClient::ensureRunning() {
  restart_.reset();
  // One that is closing must have gone first: it holds the store.
  if (!process_) startProcess();
}

void ModelDownloadClient::startProcess() {
  if (configuration_.mayExecute && !configuration_.mayExecute(configuration_.executable))
    return failAll("downloader", "The model downloader is missing from the app or is not the app's own.");
  if (configuration_.lockStore) {
    auto lock = configuration_.lockStore(configuration_.store);
    if (!lock) return failAll("downloader", "Another download into this folder is running.");
    storeLock_ = *std::move(lock);
  }
  std::vector<std::string> arguments{"--store", configuration_.store.string()};
  arguments.insert(arguments.end(), configuration_.arguments.begin(), configuration_.arguments.end());
  auto launched = launcher_.launch({.executable = configuration_.executable,
                                    .arguments = std::move(arguments),
                                    .environment = configuration_.environment,
                                    .sandbox = {.readable = configuration_.readable,
                                                .writable = {configuration_.store},
                                                .network = ProcessSandbox::Network::internet}});
  if (!launched)
    return failAll("downloader", "The model downloader could not be started: " + launched.error());
  process_ = *std::move(launched);
  isClosing_ = false;
  lines_ = LineSplitter(longestLine);
  for (const int descriptor : {process_->input(), process_->output()})
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
  output_ = executor_.watchReadable(process_->output(), [this] { receive(); });

  if (runtimeActive_) send(downloader_command::runtime(true));
  for (const auto importance : allCases<MRMModelDownloadImportance>()) {
    std::vector<std::string> identifiers;
    for (const auto& [identifier, wanted] : wanted_) {
      if (!wanted.status.isOver() && wanted.importance == importance) identifiers.push_back(identifier);
    }
    if (!identifiers.empty()) send(downloader_command::download(identifiers, importance));
  }
}

void ModelDownloadClient::send(const std::string& line) {
  // The pipe holds a thousand commands. A downloader that lets it fill up does not work; one that has died is
  // noticed by its output.
  const auto count = ::write(process_->input(), line.data(), line.size());
  if (count == static_cast<ssize_t>(line.size())) return;
  process_->closeInput();
  isClosing_ = true;
}

void ModelDownloadClient::receive() {
  std::array<char, std::size_t{16} * 1'024> bytes{};
  while (process_) {
    const auto count = ::read(process_->output(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EAGAIN) return;
    if (count <= 0) return processEnded();
    lines_.append({bytes.data(), static_cast<std::size_t>(count)});
    while (const auto line = lines_.next()) {
      if (const auto event = DownloaderEvent::decode(line->text)) take(*event);
    }
  }
}

void ModelDownloadClient::take(const DownloaderEvent& event) {
  using Kind = DownloaderEvent::Kind;
  if (event.kind == Kind::fatal) return failAll("downloader", event.message);
  if (event.kind == Kind::idle) {
    // Said before it read our last command, perhaps: then there is something left, and it will say it again.
    if (isActive() || isClosing_) return;
    process_->closeInput();
    isClosing_ = true;
    isEndExpected_ = true;
    return;
  }
  const auto found = wanted_.find(event.identifier);
  // A line about something that was cancelled meanwhile.
  if (found == wanted_.end() || found->second.status.isOver()) return;
  auto status = found->second.status;
  status.message = event.message;
  switch (event.kind) {
    case Kind::progress:
      if (const auto state = stateFor(event.state)) status.state = *state;
      if (event.received > status.received) deaths_ = 0;
      status.received = event.received;
      status.total = event.total;
      break;
    case Kind::installed:
      deaths_ = 0;
      status.state = State::installed;
      if (status.total) status.received = *status.total;
      break;
    case Kind::failed:
      status.state = State::failed;
      status.reason = event.reason;
      break;
    case Kind::refused:
      status.state = State::failed;
      status.reason = event.reason;
      status.message = "This file is not on the list of approved downloads.";
      break;
    default:
      return;
  }
  set(event.identifier, std::move(status));
}

void ModelDownloadClient::processEnded() {
  output_.reset();
  // Reaped before another one starts: until then it holds the store.
  process_.reset();
  storeLock_ = {};
  isClosing_ = false;
  const bool wasExpected = std::exchange(isEndExpected_, false);
  if (!isActive()) return;
  // Asked for while it was closing.
  if (wasExpected) return startProcess();
  if (deaths_ >= MRMModelDownloadPolicy::maximumAutomaticRetries)
    return failAll("downloader", "The model downloader ended unexpectedly.");
  restart_ = executor_.after(MRMModelDownloadPolicy::retryDelay(deaths_++), [this] { startProcess(); });
}

void ModelDownloadClient::failAll(const std::string& reason, const std::string& message) {
  for (const auto& [identifier, wanted] : wanted_) {
    if (wanted.status.isOver()) continue;
    auto status = wanted.status;
    status.state = State::failed;
    status.reason = reason;
    status.message = message;
    set(identifier, std::move(status));
  }
}

void ModelDownloadClient::set(const std::string& identifier, ModelDownloadStatus status) {
  auto& current = wanted_[identifier].status;
  current = std::move(status);
  executor_.post([this, identifier, told = current, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) changed_.emit(identifier, told);
  });
}

}  // namespace murmel
