// The session guard among a logind and screen savers that the test plays, on a bus of its own, and behind
// real lockers.

#include "Platform/Linux/X11/X11ScreenLock.h"
#include "Platform/Qt/DesktopSessionGuard.h"
#include "Platform/Qt/QtExecutor.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/WindowTests.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QVariantMap>

namespace {

const auto sessionPath = QStringLiteral("/org/freedesktop/login1/session/one");
const auto managerPath = QStringLiteral("/org/freedesktop/login1");
const auto managerName = QStringLiteral("org.freedesktop.login1.Manager");

const Surroundings surroundings(__FILE__, [] {
  // One bus plays both.
  ::setenv("DBUS_SYSTEM_BUS_ADDRESS", std::getenv("DBUS_SESSION_BUS_ADDRESS"), 1);
  static int argumentCount = 0;
  return std::make_shared<QCoreApplication>(argumentCount, nullptr);
});

/// Answers what the guard asks of logind, and tells what the test says.
class PlayedLogind final : public QDBusVirtualObject {
 public:
  PlayedLogind() {
    bus.registerVirtualObject(managerPath, this, QDBusConnection::SubPath);
    EXPECT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.login1")));
  }
  ~PlayedLogind() override { QDBusConnection::disconnectFromBus(QStringLiteral("logind")); }

  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& on) override {
    QVariantList answer;
    if (message.member() == QStringLiteral("GetSession")) {
      answer = {QVariant::fromValue(QDBusObjectPath(sessionPath))};
    } else if (message.member() == QStringLiteral("GetAll")) {
      answer = {QVariantMap{{QStringLiteral("LockedHint"), lockedAtFirst}}};
    } else if (message.member() == QStringLiteral("Inhibit")) {
      std::array<int, 2> ends{};
      EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
      inhibition = ends[0];
      answer = {QVariant::fromValue(QDBusUnixFileDescriptor(ends[1]))};
      ::close(ends[1]);
      ++inhibitions;
    }
    return on.send(message.createReply(answer));
  }

  void tellManager(const QString& signal, bool value) {
    auto message = QDBusMessage::createSignal(managerPath, managerName, signal);
    message.setArguments({value});
    bus.send(message);
  }
  void tellSession(const QString& property, bool value) {
    auto message = QDBusMessage::createSignal(sessionPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                              QStringLiteral("PropertiesChanged"));
    message.setArguments(
        {QStringLiteral("org.freedesktop.login1.Session"), QVariantMap{{property, value}}, QStringList()});
    bus.send(message);
  }
  /// Whether somebody still holds the last inhibitor.
  [[nodiscard]] bool isInhibited() const {
    char byte = 0;
    return ::read(inhibition, &byte, 1) < 0;
  }

  QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("logind"));
  bool lockedAtFirst = true;
  int inhibition = -1;
  int inhibitions = 0;
};

}  // namespace

TEST(SessionGuard, FollowsLogindAndTheScreenSavers) {
  QtExecutor executor;
  PlayedLogind logind;
  DesktopSessionGuard guard(executor, [] { return false; });
  int changes = 0;
  const auto observer = guard.onChange([&] { ++changes; });
  const auto becomes = [&](std::optional<SessionObstacle> expected) {
    return waitUntil([&] { return guard.obstacle() == expected; });
  };
  EXPECT_TRUE(becomes(SessionObstacle::locked)) << "it was so before";
  const struct {
    const char* property;
    bool obstructs;
    SessionObstacle obstacle;
  } rows[]{{"LockedHint", true, SessionObstacle::locked}, {"Active", false, SessionObstacle::inactive}};
  logind.tellSession(QStringLiteral("LockedHint"), false);
  EXPECT_TRUE(becomes(std::nullopt));
  for (const auto& row : rows) {
    logind.tellSession(QString::fromLatin1(row.property), row.obstructs);
    EXPECT_TRUE(becomes(row.obstacle));
    logind.tellSession(QString::fromLatin1(row.property), !row.obstructs);
    EXPECT_TRUE(becomes(std::nullopt));
  }

  ASSERT_TRUE(waitUntil([&] { return logind.inhibitions == 1; }));
  EXPECT_TRUE(logind.isInhibited());
  logind.tellManager(QStringLiteral("PrepareForSleep"), true);
  EXPECT_TRUE(becomes(SessionObstacle::suspending));
  EXPECT_TRUE(waitUntil([&] { return !logind.isInhibited(); })) << "the computer may sleep now";
  logind.tellManager(QStringLiteral("PrepareForSleep"), false);
  EXPECT_TRUE(becomes(std::nullopt));
  EXPECT_TRUE(waitUntil([&] { return logind.inhibitions == 2; }));
  bool shutsDown = false;
  const auto shutdown = guard.onEnd([&] { shutsDown = true; });
  logind.tellManager(QStringLiteral("PrepareForShutdown"), true);
  EXPECT_TRUE(waitUntil([&] { return shutsDown; }));
  EXPECT_TRUE(logind.isInhibited()) << "until the process has ended";

  for (const auto* name : {"org.gnome.ScreenSaver", "org.freedesktop.ScreenSaver"}) {
    SCOPED_TRACE(name);
    const auto service = QString::fromLatin1(name);
    auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, service);
    const auto tell = [&](bool active) {
      auto message = QDBusMessage::createSignal("/" + QString(service).replace('.', '/'), service,
                                                QStringLiteral("ActiveChanged"));
      message.setArguments({active});
      bus.send(message);
    };
    tell(true);
    EXPECT_TRUE(becomes(SessionObstacle::locked));
    tell(false);
    EXPECT_TRUE(becomes(std::nullopt));
    tell(true);
    EXPECT_TRUE(becomes(SessionObstacle::locked));
    bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(service);
    EXPECT_TRUE(becomes(std::nullopt)) << "a locker that has died locks nothing";
  }
  EXPECT_GT(changes, 0);
}

TEST(SessionGuard, SeesLockersThatTellNobody) {
  QtExecutor executor;
  const auto screen = X11ScreenLock::open();
  ASSERT_TRUE(screen);
  DesktopSessionGuard guard(executor, [&] { return (*screen)->isLocked(); });
  EXPECT_FALSE(guard.obstacle());
  for (const auto* locker : {"i3lock", "xsecurelock"}) {
    SCOPED_TRACE(locker);
    if (std::system((std::string("command -v ") + locker + " >/dev/null").c_str()) != 0) continue;
    bool told = false;
    const auto observer = guard.onChange([&] { told = true; });
    {
      const ApplicationProcess locked(
          {"/bin/sh", "-c",
           std::string("exec </dev/null >/dev/null 2>&1 ") + locker + (locker[0] == 'i' ? " -n" : "")});
      EXPECT_TRUE(waitUntil([&] { return guard.obstacle() == SessionObstacle::locked; }));
    }
    EXPECT_TRUE(waitUntil([&] { return told && !guard.obstacle(); }));
  }
}
