#include "Platform/Qt/LogindSleepMonitor.h"
#include "Platform/Qt/PortalAppearance.h"
#include "Platform/Qt/TaskBarPresence.h"
#include "Support/X11/WindowTests.h"
#include "Support/X11/XWindows.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QWidget>

namespace {

class TaskBar : public ::testing::Test {
 protected:
  /// As a task bar decides it.
  [[nodiscard]] bool isListed() const {
    const auto id = static_cast<xcb_window_t>(window.winId());
    const auto managed = x.property(x.screen().root, "_NET_CLIENT_LIST");
    const auto state = x.property(id, "_NET_WM_STATE");
    return std::ranges::find(managed, id) != managed.end() &&
           std::ranges::find(state, x.atom("_NET_WM_STATE_SKIP_TASKBAR")) == state.end();
  }
  [[nodiscard]] bool isManaged() const {
    const auto managed = x.property(x.screen().root, "_NET_CLIENT_LIST");
    return std::ranges::find(managed, static_cast<xcb_window_t>(window.winId())) != managed.end();
  }
  void show() {
    window.show();
    ASSERT_TRUE(waitUntil([this] { return isManaged(); }));
  }
  void hide() {
    window.hide();
    ASSERT_TRUE(waitUntil([this] { return !isManaged(); }));
  }

  test::XObserver x;
  TaskBarPresence presence;
  QWidget window;
};

TEST_F(TaskBar, lists_our_windows_unless_told_otherwise) {
  EXPECT_EQ(presence.current(), ActivationPolicy::regular);
  show();
  EXPECT_TRUE(isListed());
}

TEST_F(TaskBar, leaves_windows_out_whenever_they_are_shown) {
  presence.set(ActivationPolicy::accessory);
  EXPECT_EQ(presence.current(), ActivationPolicy::accessory);
  show();
  EXPECT_FALSE(isListed());
  hide();
  show();
  EXPECT_FALSE(isListed()) << "shown once more";
  hide();
  presence.set(ActivationPolicy::regular);
  show();
  EXPECT_TRUE(isListed());
}

TEST_F(TaskBar, changes_windows_that_are_open) {
  show();
  presence.set(ActivationPolicy::accessory);
  EXPECT_TRUE(waitUntil([this] { return !isListed(); }));
  presence.set(ActivationPolicy::regular);
  EXPECT_TRUE(waitUntil([this] { return isListed(); }));
}

TEST(LogindSleepMonitor, tells_when_a_suspend_is_over_and_not_when_it_begins) {
  auto bus = QDBusConnection::connectToBus(QString::fromUtf8(qgetenv("DBUS_SYSTEM_BUS_ADDRESS")), "logind");
  ASSERT_TRUE(bus.registerService("org.freedesktop.login1"));
  LogindSleepMonitor monitor;
  int wakes = 0;
  const auto registration = monitor.didWake().subscribe([&] { ++wakes; });
  const auto tell = [&](bool begins) {
    auto signal = QDBusMessage::createSignal("/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                             "PrepareForSleep");
    signal << begins;
    ASSERT_TRUE(bus.send(signal));
  };
  tell(true);
  tell(false);
  EXPECT_TRUE(waitUntil([&] { return wakes > 0; }));
  tell(true);
  tell(false);
  EXPECT_TRUE(waitUntil([&] { return wakes > 1; }));
  EXPECT_EQ(wakes, 2);
}

/// The desktop's settings portal.
class Portal final : public QDBusVirtualObject {
 public:
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& question, const QDBusConnection& connection) override {
    const auto found = values.find(question.arguments().at(1).toString());
    if (found == values.end()) return false;
    const auto value = QDBusVariant(found->second);
    return connection.send(
        question.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(value)))));
  }
  const std::map<QString, QVariant> values{
      {"color-scheme", 1U}, {"contrast", 0U}, {"enable-animations", true}};
};

TEST(PortalAppearance, follows_what_the_desktop_says) {
  auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal");
  Portal portal;
  ASSERT_TRUE(bus.registerVirtualObject("/org/freedesktop/portal/desktop", &portal));
  ASSERT_TRUE(bus.registerService("org.freedesktop.portal.Desktop"));
  PortalAppearance appearance;
  const auto becomes = [&](PortalAppearance::Preference wanted) {
    return waitUntil([&] { return appearance.preference() == wanted; });
  };
  EXPECT_TRUE(becomes({true, false, false}));
  const auto change = [&](const char* group, const char* key, const QVariant& value) {
    auto signal = QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                             "org.freedesktop.portal.Settings", "SettingChanged");
    signal << group << key << QVariant::fromValue(QDBusVariant(value));
    bus.send(signal);
  };
  change("org.freedesktop.appearance", "color-scheme", 2U);
  EXPECT_TRUE(becomes({false, false, false}));
  change("org.freedesktop.appearance", "contrast", 1U);
  change("org.gnome.desktop.interface", "enable-animations", false);
  change("org.freedesktop.appearance", "color-scheme", 0U);
  EXPECT_TRUE(becomes({std::nullopt, true, true}));
}

// For the other windows' tests, too, which run with these.
const test::Surroundings surroundings(__FILE__, [] {
  // The session's bus stands for the system's. The address is read with the first connection to any bus.
  qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
  return test::windowApplication();
});

}  // namespace
