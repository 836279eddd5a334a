#include "Platform/Qt/PortalAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <utility>

namespace murmel {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
const auto group = QStringLiteral("org.freedesktop.appearance");
const auto schemeKey = QStringLiteral("color-scheme");
const auto contrastKey = QStringLiteral("contrast");
// No common name yet: GNOME's and KDE's own.
const auto gnomeGroup = QStringLiteral("org.gnome.desktop.interface");
const auto animationsKey = QStringLiteral("enable-animations");
const auto kdeGroup = QStringLiteral("org.kde.kdeglobals.KDE");
const auto durationKey = QStringLiteral("AnimationDurationFactor");

/// The portal packs its answers once too often.
QVariant unpacked(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}

}  // namespace

class PortalAppearance::Listener final : public QObject {
  Q_OBJECT

 public:
  explicit Listener(const Signal<>& changed) : changed_(changed) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    // Or Qt does not know the slot's last argument yet, and refuses the connection.
    qRegisterMetaType<QDBusVariant>();
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(bus, group, schemeKey);
    ask(bus, group, contrastKey);
    ask(bus, gnomeGroup, animationsKey);
    ask(bus, kdeGroup, durationKey);
  }

  [[nodiscard]] Preference preference() const { return preference_; }

 private Q_SLOTS:
  void settingChanged(const QString& changedGroup, const QString& key, const QDBusVariant& value) {
    if (changedGroup == group || changedGroup == gnomeGroup || changedGroup == kdeGroup)
      take(key, value.variant());
  }

 private:
  void ask(QDBusConnection& bus, const QString& askedGroup, const QString& key) {
    auto question = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << askedGroup << key;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, key] {
      const QDBusPendingReply<QVariant> reply = *answer;
      if (!reply.isError()) take(key, reply.value());
      answer->deleteLater();
    });
  }

  void take(const QString& key, const QVariant& packed) {
    const auto unwrapped = unpacked(packed);
    const auto value = unwrapped.toUInt();
    auto now = preference_;
    if (key == schemeKey) {
      if (value == 1) now.dark = true;
      if (value == 2) now.dark = false;
      if (value != 1 && value != 2) now.dark.reset();
    }
    if (key == contrastKey) now.highContrast = value == 1;
    if (key == animationsKey) now.reducedMotion = !unwrapped.toBool();
    if (key == durationKey) now.reducedMotion = unwrapped.toDouble() == 0;
    if (std::exchange(preference_, now) != now) changed_.emit();
  }

  const Signal<>& changed_;
  Preference preference_;
};

PortalAppearance::PortalAppearance() : listener_(std::make_unique<Listener>(changed_)) {}

PortalAppearance::~PortalAppearance() = default;

PortalAppearance::Preference PortalAppearance::preference() const {
  return listener_->preference();
}

}  // namespace murmel

#include "PortalAppearance.moc"
