#include "Shell/SystemConditions.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace murmel {

namespace {

// NM_STATE_CONNECTED_LOCAL is the first that has a network, but none beyond this computer's neighbours.
constexpr uint connectedSite = 60;
// NM_METERED_YES and NM_METERED_GUESS_YES.
constexpr uint meteredYes = 1;
constexpr uint meteredGuessYes = 3;

QString networkManager() {
  return QStringLiteral("org.freedesktop.NetworkManager");
}
QString powerService() {
  return QStringLiteral("org.freedesktop.UPower");
}

}  // namespace

SystemConditions::SystemConditions() {
  watch(networkManager(), QStringLiteral("/org/freedesktop/NetworkManager"));
  watch(powerService(), QStringLiteral("/org/freedesktop/UPower"));
}

void SystemConditions::watch(const QString& service, const QString& path) {
  auto bus = QDBusConnection::systemBus();
  if (!bus.isConnected()) return;
  const auto properties = QStringLiteral("org.freedesktop.DBus.Properties");
  bus.connect(service, path, properties, QStringLiteral("PropertiesChanged"), this,
              SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
  auto question = QDBusMessage::createMethodCall(service, path, properties, QStringLiteral("GetAll"));
  question << service;  // both call their interface like themselves
  question.setAutoStartService(false);
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
    const QDBusPendingReply<QVariantMap> reply = *finished;
    finished->deleteLater();
    if (reply.isError()) return;
    const auto values = reply.value();
    for (auto value = values.begin(); value != values.end(); ++value) take(value.key(), value.value());
  });
}

void SystemConditions::propertiesChanged(const QString& /*interface*/, const QVariantMap& changed,
                                         const QStringList& /*invalidated*/) {
  for (auto value = changed.begin(); value != changed.end(); ++value) take(value.key(), value.value());
}

void SystemConditions::take(const QString& name, const QVariant& value) {
  if (name == QStringLiteral("State")) isOnline_ = value.toUInt() >= connectedSite;
  if (name == QStringLiteral("Metered"))
    isMetered_ = value.toUInt() == meteredYes || value.toUInt() == meteredGuessYes;
  if (name == QStringLiteral("OnBattery")) isOnBattery_ = value.toBool();
}

}  // namespace murmel
