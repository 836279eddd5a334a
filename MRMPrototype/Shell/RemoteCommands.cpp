#include "Shell/RemoteCommands.h"

#include "Shell/RemoteInterface.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <utility>

namespace murmel {

namespace {

void refuse(const QDBusMessage& request, const QString& reason) {
  QDBusConnection::sessionBus().send(request.createErrorReply(QDBusError::InvalidArgs, reason));
}

}  // namespace

/// What desktops call; nobody waits for what becomes of it.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  ApplicationAdaptor(QObject* parent, const RemoteCommandService::Handlers& handlers)
      : QDBusAbstractAdaptor(parent), handlers_(handlers) {}

 public Q_SLOTS:
  // The names and signatures are those of the interface.
  void Activate(const QVariantMap& /*platformData*/) { perform(IntelCommand::revealApplication); }
  void Open(const QStringList& /*uris*/, const QVariantMap& /*platformData*/) {
    perform(IntelCommand::revealApplication);
  }
  void ActivateAction(const QString& action, const QVariantList& /*parameter*/,
                      const QVariantMap& /*platformData*/, const QDBusMessage& request) {
    if (const auto command = commandForAction(action.toStdString())) {
      perform(*command);
      return;
    }
    request.setDelayedReply(true);
    refuse(request, QStringLiteral("there is no such action"));
  }

 private:
  void perform(IntelCommand command) const {
    handlers_.command(command, [](const CommandOutcome&) {});
  }

  const RemoteCommandService::Handlers& handlers_;
};

/// What `murmel <command>` and panels call.
class DictationAdaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "app.murmel.Dictation1")
  Q_PROPERTY(QString State READ state)
  Q_PROPERTY(QString Message READ message)
  Q_PROPERTY(QString Engine READ engine)
  Q_PROPERTY(double Level READ level)
  Q_PROPERTY(double Elapsed READ elapsed)

 public:
  DictationAdaptor(QObject* parent, const RemoteCommandService::Handlers& handlers)
      : QDBusAbstractAdaptor(parent), handlers_(handlers) {}

  [[nodiscard]] QString state() const { return QString::fromStdString(handlers_.status().state); }
  [[nodiscard]] QString message() const { return QString::fromStdString(handlers_.status().message); }
  [[nodiscard]] QString engine() const { return QString::fromStdString(handlers_.status().engine); }
  [[nodiscard]] double level() const { return handlers_.status().level; }
  [[nodiscard]] double elapsed() const { return handlers_.status().elapsed; }

 public Q_SLOTS:
  /// The answer is whether it was done, and if not, why. `deadline` is on the clock that counts from the
  /// start of the computer, in microseconds: nobody waits any more after it, so nothing is done.
  bool Perform(const QString& action, qulonglong deadline, const QDBusMessage& request, QString& reason) {
    reason.clear();
    request.setDelayedReply(true);
    const auto command = commandForAction(action.toStdString());
    if (!command) {
      refuse(request, QStringLiteral("there is no such action"));
    } else if (remote::sharedClock() > deadline) {
      refuse(request, QStringLiteral("too late"));
    } else {
      handlers_.command(*command, [request](const CommandOutcome& outcome) {
        const auto why = QString::fromStdString(outcome ? "" : outcome.error());
        QDBusConnection::sessionBus().send(request.createReply({outcome.has_value(), why}));
      });
    }
    return false;
  }

 private:
  const RemoteCommandService::Handlers& handlers_;
};

class RemoteCommandService::Object final : public QObject {
 public:
  explicit Object(Handlers handlers) : handlers_(std::move(handlers)) {
    new ApplicationAdaptor(this, handlers_);
    new DictationAdaptor(this, handlers_);
  }
  [[nodiscard]] StatusReport status() const { return handlers_.status(); }

 private:
  Handlers handlers_;
};

RemoteCommandService::RemoteCommandService(std::string applicationIdentifier, Handlers handlers)
    : applicationIdentifier_(std::move(applicationIdentifier)) {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  object_ = std::make_unique<Object>(std::move(handlers));
  // The object first: whoever sees the name may call at once.
  bus.registerObject(remote::objectPath(applicationIdentifier_), object_.get(),
                     QDBusConnection::ExportAdaptors);
  bus.registerService(QString::fromStdString(applicationIdentifier_));
}

RemoteCommandService::~RemoteCommandService() {
  if (!object_) return;
  auto bus = QDBusConnection::sessionBus();
  bus.unregisterService(QString::fromStdString(applicationIdentifier_));
  bus.unregisterObject(remote::objectPath(applicationIdentifier_));
}

void RemoteCommandService::announceStatus() {
  if (!object_) return;
  const auto status = object_->status();
  const QVariantMap changed{
      {QStringLiteral("State"), QString::fromStdString(status.state)},
      {QStringLiteral("Message"), QString::fromStdString(status.message)},
      {QStringLiteral("Engine"), QString::fromStdString(status.engine)},
      {QStringLiteral("Level"), status.level},
      {QStringLiteral("Elapsed"), status.elapsed},
  };
  auto signal = QDBusMessage::createSignal(remote::objectPath(applicationIdentifier_),
                                           remote::propertiesInterface, QStringLiteral("PropertiesChanged"));
  signal.setArguments({remote::dictationInterface, changed, QStringList()});
  QDBusConnection::sessionBus().send(signal);
}

}  // namespace murmel

#include "RemoteCommands.moc"
