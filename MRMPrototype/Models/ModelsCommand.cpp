#include "Models/ModelsCommand.h"

#include "Foundation/Text/Sizes.h"

#include <algorithm>
#include <utility>

#include <fmt/core.h>

namespace murmel {

namespace {

using Finding = ModelInventory::Finding;
using State = ModelDownloadStatus::State;

// Exit statuses.
constexpr int exitDone = 0;
constexpr int exitFailed = 1;
constexpr int exitMisused = 2;

constexpr std::string_view usage =
    "usage: murmel models [list]            what there is, and what is installed\n"
    "       murmel models download [NAME]   fetch a model (the recommended speech model without a name)\n"
    "       murmel models verify [NAME]     read installed models and compare them with what they must be\n"
    "       murmel models remove NAME       remove a model\n";

constexpr std::string_view packagedHint = "It comes with the application or the system and stays.";

std::string_view wordFor(Finding finding) {
  switch (finding) {
    case Finding::missing:
      return "not installed";
    case Finding::wrong:
      return "damaged";
    case Finding::unknown:
      return "installed, not verified yet";
    case Finding::verified:
      return "installed";
  }
  std::unreachable();
}

/// The files of one model, as one.
struct Progress {
  std::int64_t received = 0;
  std::int64_t total = 0;
  bool isTotalKnown = true;
  std::string state;
  std::optional<double> rate;             ///< bytes a second
  std::optional<std::int64_t> remaining;  ///< seconds
};

std::string speed(const Progress& progress) {
  if (!progress.rate) return {};
  auto text = fmt::format("{:.1f} MB/s ", *progress.rate / 1e6);
  if (progress.remaining)
    text += fmt::format("{}:{:02} left ", *progress.remaining / 60, *progress.remaining % 60);
  return text;
}

std::string bar(const Progress& progress) {
  constexpr int width = 30;
  if (!progress.isTotalKnown || progress.total == 0)
    return fmt::format("{:>6} {}{}", megabytes(progress.received), speed(progress), progress.state);
  const auto filled = static_cast<std::size_t>(progress.received * width / progress.total);
  return fmt::format("[{:<{}}] {:3}% {}{}", std::string(filled, '#'), width,
                     progress.received * 100 / progress.total, speed(progress), progress.state);
}

}  // namespace

ModelsCommand::ModelsCommand(Executor& executor, std::shared_ptr<ModelInventory> inventory,
                             ModelDownloadClient* client, Output output, ModelMachine machine,
                             const std::vector<CatalogModel>& catalog, std::vector<SpeechModel> packaged)
    : executor_(executor),
      installed_(std::move(inventory)),
      client_(client),
      output_(std::move(output)),
      machine_(machine),
      catalog_(catalog),
      packaged_(std::move(packaged)),
      queue_(executor, "models-command") {}

ModelsCommand::~ModelsCommand() {
  stopping_ = true;
}

void ModelsCommand::start(const std::vector<std::string>& arguments, std::function<void(int)> done) {
  done_ = std::move(done);
  const auto verb = arguments.empty() ? std::string("list") : arguments[0];
  if (arguments.size() > 2) return showUsage();
  if (verb == "list" && arguments.size() < 2) return list();

  const auto name = arguments.size() == 2 ? std::optional(arguments[1]) : std::nullopt;
  const auto model = name ? std::ranges::find(catalog_, *name, &CatalogModel::name) : catalog_.begin();
  if (name && model == catalog_.end() && packaged(*name) == nullptr) {
    return fail(
        exitMisused,
        fmt::format("There is no model \"{}\"; \"murmel models list\" shows those there are.", *name));
  }
  if (verb == "verify") return verify(name);
  if (verb != "download" && (verb != "remove" || !name)) return showUsage();
  if (model == catalog_.end()) {
    if (verb == "remove") return fail(exitFailed, packagedHint);
    print(fmt::format("{}\n", packagedHint));
    return finish(exitDone);
  }
  if (verb == "download") return download(*model);
  remove(*model);
}

/// Nothing when it is not there.
const SpeechModel* ModelsCommand::packaged(std::string_view name) const {
  const auto found = std::ranges::find_if(packaged_, [&](const SpeechModel& model) {
    return model.engine->identifier == name && murmel::isThere(model);
  });
  return found == packaged_.end() ? nullptr : &*found;
}

void ModelsCommand::showUsage() {
  fail(exitMisused, usage);
}

void ModelsCommand::list() {
  for (const auto& model : catalog_) {
    const auto finding = installed_->look(model.identifiers);
    const bool isThere = finding != Finding::missing;
    if (!isThere && packaged(model.name) != nullptr) continue;
    const bool isPackaged = installed_->isPackaged(model.identifiers);
    const auto size = isThere && !isPackaged ? installed_->bytes(model.identifiers) : downloadSize(model);
    print(fmt::format("{:<15} {:<38} {:>8}  {:<11} {}\n", model.name,
                      isPackaged ? fmt::format("{} · Packaged", model.title) : std::string(model.title),
                      megabytes(size), model.licence, wordFor(finding)));
    if (!model.purpose.empty()) print(fmt::format("{:<15} {}\n", "", model.purpose));
    auto obstacle = whyUnusable(model, machine_);
    if (obstacle.empty() && !isThere) obstacle = whyNotDownloadable(model);
    if (!obstacle.empty()) print(fmt::format("{:<15} {}\n", "", obstacle));
  }
  for (const auto& model : packaged_) {
    const auto& engine = *model.engine;
    const bool there = murmel::isThere(model);
    // Where it does not come with the application, it can be downloaded.
    if (!there && std::ranges::find(catalog_, engine.identifier, &CatalogModel::name) != catalog_.end())
      continue;
    std::uint64_t size = 0;
    for (const auto& file : model.files) size += file.size;
    print(fmt::format("{:<15} {:<40} {:>8}  {}\n", engine.identifier,
                      fmt::format("{} · Packaged", engine.title), there ? megabytes(size) : std::string(),
                      wordFor(installed_->look(model, model.folder))));
  }
  finish(exitDone);
}

void ModelsCommand::download(const CatalogModel& model) {
  if (client_ == nullptr) return fail(exitFailed, "This build cannot download models.");
  if (const auto obstacle = whyNotDownloadable(model); !obstacle.empty()) return fail(exitFailed, obstacle);
  print(fmt::format("{}, {}, {}\n", model.title, megabytes(downloadSize(model)), model.licence));
  if (const auto obstacle = whyUnusable(model, machine_); !obstacle.empty()) print(obstacle + "\n");
  changes_ = client_->onChange([this, &model](const auto& identifier, const auto& status) {
    downloadChanged(model, identifier, status);
  });
  client_->download(model.identifiers, model.importance);
}

void ModelsCommand::downloadChanged(const CatalogModel& model, const std::string& identifier,
                                    const ModelDownloadStatus& changed) {
  statuses_.insert_or_assign(identifier, changed);
  showProgress(model, changed);
  bool isOver = true;
  std::optional<ModelDownloadStatus> failure;
  for (const auto& wanted : model.identifiers) {
    const auto status = statuses_.find(wanted);
    isOver = isOver && status != statuses_.end() && status->second.isOver();
    if (isOver && status->second.state != State::installed) failure = status->second;
  }
  if (!isOver) return;
  changes_.reset();
  if (output_.isTerminal) print("\n");
  if (!failure) return rememberAndFinish(model);
  fail(exitFailed, failure->state == State::cancelled ? "Stopped. The same command continues where it was."
                                                      : failure->message);
}

/// The downloader has verified it; read once more here, so that nobody has to wait for that later, and so
/// that a running instance learns of it.
void ModelsCommand::rememberAndFinish(const CatalogModel& model) {
  queue_.enqueue([this, &model, installed = installed_, alive = std::weak_ptr(alive_)] {
    const bool isRight = installed->verify(model.identifiers, stopping_);
    executor_.post([this, isRight, alive] {
      if (alive.expired()) return;
      if (!isRight) return fail(exitFailed, "The file changed right after it was installed.");
      print("Installed.\n");
      finish(exitDone);
    });
  });
}

void ModelsCommand::showProgress(const CatalogModel& model, const ModelDownloadStatus& changed) {
  Progress progress;
  for (const auto& identifier : model.identifiers) {
    const auto found = statuses_.find(identifier);
    progress.isTotalKnown = progress.isTotalKnown && found != statuses_.end() && found->second.total;
    if (found == statuses_.end()) continue;
    progress.received += found->second.received;
    progress.total += found->second.total.value_or(0);
  }
  rate_.add(output_.now(), progress.received);
  progress.rate = rate_.bytesPerSecond();
  if (progress.isTotalKnown) progress.remaining = rate_.remaining(progress.total - progress.received);
  if (changed.state == State::retrying) progress.state = changed.message + " Trying again.";
  if (changed.state == State::checking) progress.state = "checking what is there";
  const auto shown = bar(progress);
  if (shown == std::exchange(lastShown_, shown)) return;
  // Over the line before, where that is possible; elsewhere only what a log should hold.
  if (output_.isTerminal) {
    print("\r\x1b[K" + shown);
  } else if (!progress.state.empty()) {
    print(shown + "\n");
  }
}

void ModelsCommand::interrupt() {
  stopping_ = true;
  if (client_ == nullptr) return;
  for (const auto& model : catalog_) {
    const bool isUnderWay = std::ranges::any_of(model.identifiers, [&](const auto& identifier) {
      const auto status = client_->status(identifier);
      return status && !status->isOver();
    });
    if (isUnderWay) client_->cancel(model.identifiers);
  }
}

void ModelsCommand::verify(const std::optional<std::string>& name) {
  std::vector<std::pair<std::string_view, std::function<bool()>>> readings;
  for (const auto& model : catalog_) {
    const bool isThere = installed_->look(model.identifiers) != Finding::missing;
    if (name ? name != model.name || (!isThere && packaged(model.name) != nullptr) : !isThere) continue;
    readings.emplace_back(model.name,
                          [this, &model] { return installed_->verifyAgain(model.identifiers, stopping_); });
  }
  for (const auto& model : packaged_) {
    if ((name && name != model.engine->identifier) || !murmel::isThere(model)) continue;
    readings.emplace_back(model.engine->identifier,
                          [this, &model] { return installed_->verifyAgain(model, stopping_); });
  }
  if (readings.empty()) {
    print("No model is installed.\n");
    return finish(exitDone);
  }
  // Read again, all of it: that is what was asked for.
  queue_.enqueue([this, readings, alive = std::weak_ptr(alive_)] {
    std::string text;
    bool allRight = true;
    for (const auto& [model, isRight] : readings) {
      const bool right = isRight();
      text += fmt::format("{:<15} {}\n", model, right ? "verified" : "missing or damaged");
      allRight = allRight && right;
    }
    executor_.post([this, text, allRight, alive] {
      if (alive.expired()) return;
      print(text);
      finish(allRight ? exitDone : exitFailed);
    });
  });
}

void ModelsCommand::remove(const CatalogModel& model) {
  const bool stays = installed_->bytes(model.identifiers) == 0 &&
                     (installed_->isPackaged(model.identifiers) || packaged(model.name) != nullptr);
  const bool wasThere = installed_->look(model.identifiers) != Finding::missing;
  const bool isGone = installed_->remove(model.identifiers);
  if (!isGone) return fail(exitFailed, "The model could not be removed.");
  if (stays) return fail(exitFailed, packagedHint);
  print(wasThere ? "Removed.\n" : "The model is not installed.\n");
  finish(exitDone);
}

void ModelsCommand::fail(int status, std::string_view sentence) {
  output_.complain(sentence);
  finish(status);
}

void ModelsCommand::finish(int status) {
  // Posted, so that `done` may destroy this object.
  executor_.post([done = std::exchange(done_, nullptr), status] {
    if (done) done(status);
  });
}

}  // namespace murmel
