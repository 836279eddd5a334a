#include "Shell/UpdateServices.h"

#include "Foundation/Async/OneShot.h"
#include "MRMUpdatePolicy/ReleaseKey.h"
#include "Shell/LaunchRole.h"
#include "Shell/ModelServices.h"

#include <QProcess>
#include <QScopedPointer>
#include <QTimer>
#include <algorithm>
#include <charconv>
#include <memory>
#include <utility>

#include <gnu/libc-version.h>
#include <sys/utsname.h>

namespace murmel {

namespace {

constexpr int longestStart = 30'000;  // milliseconds; a cold disk and a slow computer

std::uint64_t buildNumber(const std::string& text) {
  std::uint64_t number = 0;  // a build without one is older than any
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::string architecture() {
  utsname names{};
  return ::uname(&names) == 0 ? names.machine : "";
}

/// A development build's updater takes words of its own from the environment, for the tests.
std::vector<std::string> developmentArguments(const Installation& installation) {
  std::vector<std::string> arguments;
  if (installation.edition != DistributionEdition::development) return arguments;
  std::string rest = installation.environment.value("MURMEL_UPDATER_ARGUMENTS").value_or("");
  while (!rest.empty()) {
    const auto blank = rest.find(' ');
    arguments.push_back(rest.substr(0, blank));
    rest = blank == std::string::npos ? std::string() : rest.substr(blank + 1);
  }
  return arguments;
}

std::optional<std::string> valueOf(std::string_view name, const std::vector<std::string>& arguments) {
  const auto found = std::ranges::find(arguments, name);
  if (found == arguments.end() || found + 1 == arguments.end()) return std::nullopt;
  return *(found + 1);
}

}  // namespace

DirectUpdater::Configuration updaterConfiguration(const Installation& installation) {
  auto arguments = developmentArguments(installation);
  // The key that a development build is told, in place of the one that a release has compiled in.
  auto fingerprint = valueOf("--development-key", arguments).value_or(std::string(releaseKeyFingerprint()));
  std::vector<std::filesystem::path> readable;
  if (const auto certificates = valueOf("--development-certificates", arguments))
    readable.emplace_back(*certificates);
  std::error_code unreadable;
  const auto home =
      std::filesystem::canonical(installation.environment.value("HOME").value_or("/"), unreadable);
  return {
      .road = updateRoad(installation.channel, installation.folders.executable, home),
      .subject = {.build = buildNumber(installation.build.buildNumber),
                  .channel = std::string(rawValue(installation.channel)),
                  .edition = std::string(rawValue(installation.edition)),
                  .architecture = architecture(),
                  .system = ::gnu_get_libc_version()},
      .fingerprint = std::move(fingerprint),
      .executable = installation.folders.resources / "Workers" / DirectUpdater::workerName,
      .root = home / directInstallationFolder,
      .memory = installation.folders.data / "updates.json",
      .environment = proxies(installation.environment),
      .arguments = std::move(arguments),
      .mayExecute = [policy = installation.policy](
                        const std::filesystem::path& executable) { return policy.mayExecute(executable); },
      .readable = std::move(readable),
  };
}

Task<bool> startsUp(std::filesystem::path program) {
  auto ended = makeOneShot<bool>();
  const auto sender = std::make_shared<OneShotSender<bool>>(std::move(ended.sender));
  // It ends in a call of its own signal: what destroys it there comes later.
  const QScopedPointer<QProcess, QScopedPointerDeleteLater> process(new QProcess);
  QObject::connect(process.get(), &QProcess::finished, process.get(),
                   [sender](int status, QProcess::ExitStatus how) {
                     sender->send(how == QProcess::NormalExit && status == 0);
                   });
  QObject::connect(process.get(), &QProcess::errorOccurred, process.get(),
                   [sender](QProcess::ProcessError error) {
                     if (error == QProcess::FailedToStart) sender->send(false);
                   });
  QTimer bound;
  bound.setSingleShot(true);
  QObject::connect(&bound, &QTimer::timeout, process.get(), &QProcess::kill);
  process->setStandardInputFile(QProcess::nullDevice());
  process->setStandardOutputFile(QProcess::nullDevice());
  process->setStandardErrorFile(QProcess::nullDevice());
  bound.start(longestStart);
  process->start(QString::fromStdString(program.string()), {QString::fromLatin1(releaseLaunchFlag)});
  const auto starts = co_await ended.receiver;
  co_return starts.value_or(false);
}

}  // namespace murmel
