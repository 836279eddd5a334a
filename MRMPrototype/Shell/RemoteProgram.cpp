#include "Interface/PlatformWords.h"
#include "Shell/Programs.h"
#include "Shell/RunningInstance.h"
#include "Shell/StandardStreams.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

#include <fmt/core.h>

namespace murmel {

namespace {

int ended(int status, const std::string& sentence) {
  complain(inPlatformWords(sentence).toStdString());
  return status;
}

/// An instance that has no door on the bus is running nevertheless.
int ended(const RemoteFailure& failure, const Installation& installation) {
  const bool isRunning = InstanceLock::isHeldByEdition(installation);
  if (!isRunning) {
    const auto other = InstanceLock::holder(installation);
    return ended(
        commandStatus::notRunning,
        "Murmel is not running" + (other ? ", but another edition is: " + other->identifier + "." : "."));
  }
  if (failure.kind != RemoteFailure::Kind::nobodyThere) return ended(commandStatus::refused, failure.message);
  return ended(commandStatus::refused, "Murmel is starting or ending, and cannot be reached.");
}

std::string inWords(const StatusReport& status) {
  auto line = status.message;
  if (status.elapsed > 0) {
    constexpr double percent = 100;
    line += fmt::format(" · {:.1f} s · level {:.0f} %", status.elapsed, status.level * percent);
  }
  if (!status.engine.empty()) line += " · " + status.engine;
  return line;
}

std::string inJson(const StatusReport& status) {
  const QJsonObject object{
      {QStringLiteral("running"), true},
      {QStringLiteral("state"), QString::fromStdString(status.state)},
      {QStringLiteral("message"), QString::fromStdString(status.message)},
      {QStringLiteral("engine"), QString::fromStdString(status.engine)},
      {QStringLiteral("level"), status.level},
      {QStringLiteral("elapsed"), status.elapsed},
  };
  return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

}  // namespace

int runRemoteCommand(Arguments arguments, const Installation& installation, IntelCommand command) {
  const QCoreApplication application(arguments.count, arguments.values);
  const auto answer = sendRemoteCommand(installation.identifier, command);
  if (!answer) return ended(answer.error(), installation);
  if (!*answer) return ended(commandStatus::refused, answer->error());
  if (command == IntelCommand::quit && !awaitEndOfInstance(installation))
    return ended(commandStatus::refused, "Murmel has not ended yet.");
  return commandStatus::done;
}

int runStatus(Arguments arguments, const Installation& installation, const StatusRole& role) {
  const QCoreApplication application(arguments.count, arguments.values);
  const auto status = remoteStatus(installation.identifier);
  if (!status) {
    const bool isRunning = InstanceLock::isHeldByEdition(installation);
    if (role.json && !isRunning) print(stdout, "{{\"running\":false}}\n");
    return ended(status.error(), installation);
  }
  print(stdout, "{}\n", role.json ? inJson(*status) : inWords(*status));
  return commandStatus::done;
}

}  // namespace murmel
