#include "Shell/RemoteCommands.h"
#include "Shell/RemoteInterface.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QVariantList>

namespace murmel {

namespace {

using Kind = RemoteFailure::Kind;

std::expected<QVariantList, RemoteFailure> call(const std::string& identifier, const QString& interface,
                                                const QString& method, const QVariantList& arguments) {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return std::unexpected(
        RemoteFailure{Kind::noBus, "There is no session bus, so a running Murmel cannot be reached."});
  }
  const auto service = QString::fromStdString(identifier);
  if (!bus.interface()->isServiceRegistered(service)) {
    return std::unexpected(RemoteFailure{Kind::nobodyThere, "Murmel is not running."});
  }
  auto message = QDBusMessage::createMethodCall(service, remote::objectPath(identifier), interface, method);
  message.setAutoStartService(false);
  message.setArguments(arguments);
  const auto reply = bus.call(message, QDBus::Block, remote::replyTimeoutMilliseconds);
  if (reply.type() == QDBusMessage::ReplyMessage) return reply.arguments();
  // It may have ended between the two questions.
  if (!bus.interface()->isServiceRegistered(service)) {
    return std::unexpected(RemoteFailure{Kind::nobodyThere, "Murmel has just ended."});
  }
  return std::unexpected(
      RemoteFailure{Kind::noAnswer, "Murmel is running, but does not answer. Nothing was done."});
}

}  // namespace

std::expected<CommandOutcome, RemoteFailure> sendRemoteCommand(const std::string& applicationIdentifier,
                                                               IntelCommand command) {
  const auto name = actionName(command);
  const auto deadline = remote::sharedClock() + remote::deadlineMicroseconds;
  const auto reply = call(applicationIdentifier, remote::dictationInterface, QStringLiteral("Perform"),
                          {QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
                           QVariant::fromValue(static_cast<qulonglong>(deadline))});
  if (!reply) return std::unexpected(reply.error());
  if (reply->size() < 2)
    return std::unexpected(RemoteFailure{Kind::noAnswer, "Another version of Murmel is running."});
  if (reply->at(0).toBool()) return CommandOutcome();
  return CommandOutcome(std::unexpected(reply->at(1).toString().toStdString()));
}

std::expected<StatusReport, RemoteFailure> remoteStatus(const std::string& applicationIdentifier) {
  const auto reply = call(applicationIdentifier, remote::propertiesInterface, QStringLiteral("GetAll"),
                          {remote::dictationInterface});
  if (!reply) return std::unexpected(reply.error());
  const auto values = reply->empty() ? QVariantMap() : qdbus_cast<QVariantMap>(reply->at(0));
  return StatusReport{
      .state = values.value(QStringLiteral("State")).toString().toStdString(),
      .message = values.value(QStringLiteral("Message")).toString().toStdString(),
      .engine = values.value(QStringLiteral("Engine")).toString().toStdString(),
      .level = values.value(QStringLiteral("Level")).toDouble(),
      .elapsed = values.value(QStringLiteral("Elapsed")).toDouble(),
  };
}

}  // namespace murmel
