#include "Platform/Qt/DesktopSessionGuard.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QSet>
#include <QVariantMap>
#include <array>
#include <utility>

namespace murmel {

namespace {

const auto logind = QStringLiteral("org.freedesktop.login1");
const auto logindPath = QStringLiteral("/org/freedesktop/login1");
const auto manager = QStringLiteral("org.freedesktop.login1.Manager");
const auto session = QStringLiteral("org.freedesktop.login1.Session");
const auto properties = QStringLiteral("org.freedesktop.DBus.Properties");

struct ScreenSaverName {
  const char* service;  ///< also the interface
  const char* path;
};
/// The same interface under the name of each desktop.
constexpr std::array screenSavers{
    ScreenSaverName{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
    ScreenSaverName{"org.freedesktop.ScreenSaver", "/ScreenSaver"},
    ScreenSaverName{"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
    ScreenSaverName{"org.kde.screensaver", "/ScreenSaver"},
    ScreenSaverName{"org.cinnamon.ScreenSaver", "/org/cinnamon/ScreenSaver"},
    ScreenSaverName{"org.mate.ScreenSaver", "/org/mate/ScreenSaver"},
    ScreenSaverName{"org.xfce.ScreenSaver", "/org/xfce/ScreenSaver"},
};

constexpr Duration watchInterval = std::chrono::milliseconds(500);

/// Asks and hands the answer over when it comes; an error is no answer.
void ask(QDBusConnection bus, QDBusMessage message, QObject* owner,
         std::function<void(const QDBusMessage&)> take) {
  message.setAutoStartService(false);
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), owner);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, owner, [watcher, take = std::move(take)] {
    watcher->deleteLater();
    if (!watcher->isError()) take(watcher->reply());
  });
}

}  // namespace

class DesktopSessionGuard::Listener final : public QObject {
  Q_OBJECT

 public:
  Listener(std::function<void()> changed, std::function<void()> shutsDown)
      : changed_(std::move(changed)), shutsDown_(std::move(shutsDown)) {
    listenToScreenSavers();
    // A container has no system bus, and is neither locked by it nor suspended.
    if (!system_.isConnected()) return;
    system_.connect(logind, logindPath, manager, QStringLiteral("PrepareForSleep"), this,
                    SLOT(prepareForSleep(bool)));
    system_.connect(logind, logindPath, manager, QStringLiteral("PrepareForShutdown"), this,
                    SLOT(prepareForShutdown(bool)));
    inhibit();
    findSession();
  }

  [[nodiscard]] std::optional<SessionObstacle> obstacle() const {
    if (sleeping_) return SessionObstacle::suspending;
    if (lockedHint_ || !savers_.isEmpty()) return SessionObstacle::locked;
    if (!active_) return SessionObstacle::inactive;
    return std::nullopt;
  }

 private Q_SLOTS:
  /// `begins` is false when the suspend is over.
  void prepareForSleep(bool begins) {
    sleeping_ = begins;
    changed_();
    // The microphone is closed by now: nothing else has to be done before the sleep.
    inhibitor_ = QDBusUnixFileDescriptor();
    if (!begins) inhibit();
  }

  void prepareForShutdown(bool begins) {
    if (begins) shutsDown_();
  }

  void sessionChanged(const QString& interface, const QVariantMap& changed, const QStringList& /*gone*/) {
    if (interface == session) take(changed);
  }

  void saverChanged(bool active, const QDBusMessage& message) {
    setSaver(message.service() + message.interface(), message.service(), active);
  }

 private:
  void listenToScreenSavers() {
    if (!user_.isConnected()) return;
    saverWatch_.setConnection(user_);
    saverWatch_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    // One that crashes does not tell that the screen is free again.
    connect(&saverWatch_, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString& sender) {
      const auto of = [&](const QString& key) { return key.startsWith(sender); };
      savers_.removeIf(of);
      changed_();
    });
    for (const auto& saver : screenSavers) {
      const auto name = QString::fromLatin1(saver.service);
      const auto path = QString::fromLatin1(saver.path);
      user_.connect(QString(), path, name, QStringLiteral("ActiveChanged"), this,
                    SLOT(saverChanged(bool, QDBusMessage)));
      ask(user_, QDBusMessage::createMethodCall(name, path, name, QStringLiteral("GetActive")), this,
          [this, name](const QDBusMessage& reply) {
            setSaver(reply.service() + name, reply.service(), reply.arguments().value(0).toBool());
          });
    }
  }

  void setSaver(const QString& key, const QString& sender, bool active) {
    if (active) {
      savers_.insert(key);
      saverWatch_.addWatchedService(sender);
    } else {
      savers_.remove(key);
    }
    changed_();
  }

  /// Holds a sleep and a shutdown up until this process has reacted.
  void inhibit() {
    auto message = QDBusMessage::createMethodCall(logind, logindPath, manager, QStringLiteral("Inhibit"));
    message.setArguments({QStringLiteral("sleep:shutdown"), QStringLiteral("Murmel"),
                          QStringLiteral("A dictation is being finished"), QStringLiteral("delay")});
    ask(system_, message, this, [this](const QDBusMessage& reply) {
      if (!sleeping_) inhibitor_ = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
    });
  }

  /// The session that this process belongs to; a process of the user's own manager belongs to none, and is
  /// seen on the one that shows the user's windows.
  void findSession() {
    auto mine = QDBusMessage::createMethodCall(logind, logindPath, manager, QStringLiteral("GetSession"));
    const auto identifier = qEnvironmentVariable("XDG_SESSION_ID");
    mine.setArguments({identifier.isEmpty() ? QStringLiteral("auto") : identifier});
    ask(system_, mine, this, [this](const QDBusMessage& reply) {
      const auto path = reply.arguments().value(0).value<QDBusObjectPath>().path();
      system_.connect(logind, path, properties, QStringLiteral("PropertiesChanged"), this,
                      SLOT(sessionChanged(QString, QVariantMap, QStringList)));
      auto all = QDBusMessage::createMethodCall(logind, path, properties, QStringLiteral("GetAll"));
      all.setArguments({session});
      ask(system_, all, this,
          [this](const QDBusMessage& answer) { take(qdbus_cast<QVariantMap>(answer.arguments().value(0))); });
    });
  }

  void take(const QVariantMap& news) {
    lockedHint_ = news.value(QStringLiteral("LockedHint"), lockedHint_).toBool();
    active_ = news.value(QStringLiteral("Active"), active_).toBool();
    changed_();
  }

  std::function<void()> changed_;
  std::function<void()> shutsDown_;
  QDBusConnection system_ = QDBusConnection::systemBus();
  QDBusConnection user_ = QDBusConnection::sessionBus();
  QDBusServiceWatcher saverWatch_;
  QDBusUnixFileDescriptor inhibitor_;
  QSet<QString> savers_;  ///< those that are active, by sender and interface
  bool lockedHint_ = false;
  bool active_ = true;
  bool sleeping_ = false;
};

DesktopSessionGuard::DesktopSessionGuard(Executor& executor, std::function<bool()> screenIsTaken)
    : executor_(executor),
      screenIsTaken_(std::move(screenIsTaken)),
      listener_(std::make_unique<Listener>([this] { changed_.emit(); }, [this] { shutdown_.emit(); })) {}

DesktopSessionGuard::~DesktopSessionGuard() = default;

std::optional<SessionObstacle> DesktopSessionGuard::obstacle() {
  if (const auto told = listener_->obstacle()) return told;
  if (!screenIsTaken_()) return std::nullopt;
  if (!watch_) {
    watch_.emplace(executor_, watchInterval, [this] {
      if (screenIsTaken_()) return;
      watch_.reset();
      changed_.emit();
    });
  }
  return SessionObstacle::locked;
}

}  // namespace murmel

#include "DesktopSessionGuard.moc"
