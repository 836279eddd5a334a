#include "Shell/RemoteCommands.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <algorithm>
#include <utility>

namespace murmel {

namespace {

const auto interfaceName = QStringLiteral("org.freedesktop.Application");
/// A running instance answers in well under a millisecond; one that does not in this time hangs.
constexpr int replyTimeoutMilliseconds = 2'000;

/// The object path that the interface prescribes: the identifier with slashes for dots, and "_" for "-".
QString objectPath(const std::string& identifier) {
  auto path = "/" + identifier;
  std::ranges::replace(path, '.', '/');
  std::ranges::replace(path, '-', '_');
  return QString::fromStdString(path);
}

std::expected<void, std::string> call(const std::string& identifier, const QString& method,
                                      const QVariantList& arguments) {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected())
    return std::unexpected("There is no session bus, so a running Murmel cannot be reached.");
  const auto service = QString::fromStdString(identifier);
  if (!bus.interface()->isServiceRegistered(service)) return std::unexpected("Murmel is not running.");
  auto message = QDBusMessage::createMethodCall(service, objectPath(identifier), interfaceName, method);
  message.setAutoStartService(false);
  message.setArguments(arguments);
  const auto reply = bus.call(message, QDBus::Block, replyTimeoutMilliseconds);
  if (reply.type() != QDBusMessage::ErrorMessage) return {};
  return std::unexpected("Murmel refused: " + reply.errorMessage().toStdString());
}

}  // namespace

class ApplicationAdaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  ApplicationAdaptor(QObject* parent, RemoteCommandService::Handlers handlers)
      : QDBusAbstractAdaptor(parent), handlers_(std::move(handlers)) {}

 public Q_SLOTS:
  // The names and signatures are those of the interface.
  void Activate(const QVariantMap& /*platformData*/) { handlers_.activate(); }
  void Open(const QStringList& /*uris*/, const QVariantMap& /*platformData*/) { handlers_.activate(); }
  void ActivateAction(const QString& action, const QVariantList& /*parameter*/,
                      const QVariantMap& /*platformData*/, const QDBusMessage& request) {
    if (const auto command = commandForAction(action.toStdString())) {
      handlers_.command(*command);
      return;
    }
    request.setDelayedReply(true);
    QDBusConnection::sessionBus().send(
        request.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("there is no such action")));
  }

 private:
  RemoteCommandService::Handlers handlers_;
};

class RemoteCommandService::Object final : public QObject {
 public:
  explicit Object(Handlers handlers) { new ApplicationAdaptor(this, std::move(handlers)); }
};

RemoteCommandService::RemoteCommandService(std::string applicationIdentifier)
    : applicationIdentifier_(std::move(applicationIdentifier)) {}

RemoteCommandService::~RemoteCommandService() {
  if (!object_) return;
  auto bus = QDBusConnection::sessionBus();
  bus.unregisterService(QString::fromStdString(applicationIdentifier_));
  bus.unregisterObject(objectPath(applicationIdentifier_));
}

RemoteCommandService::Claim RemoteCommandService::claim(Handlers handlers) {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return Claim::noBus;
  object_ = std::make_unique<Object>(std::move(handlers));
  // The object first: whoever sees the name may call at once.
  bus.registerObject(objectPath(applicationIdentifier_), object_.get(), QDBusConnection::ExportAdaptors);
  if (bus.registerService(QString::fromStdString(applicationIdentifier_))) return Claim::owned;
  bus.unregisterObject(objectPath(applicationIdentifier_));
  object_.reset();
  return Claim::alreadyTaken;
}

std::expected<void, std::string> sendRemoteCommand(const std::string& applicationIdentifier,
                                                   IntelCommand command) {
  const auto name = actionName(command);
  return call(
      applicationIdentifier, QStringLiteral("ActivateAction"),
      {QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())), QVariantList{}, QVariantMap{}});
}

std::expected<void, std::string> activateRunningInstance(const std::string& applicationIdentifier) {
  return call(applicationIdentifier, QStringLiteral("Activate"), {QVariantMap{}});
}

}  // namespace murmel

#include "RemoteCommands.moc"
