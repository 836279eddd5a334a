#include "Platform/Qt/DesktopNotifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>
#include <QVariantMap>

namespace murmel {

void notifyDesktop(const QString& application, const QString& title, const QString& text,
                   std::function<void(bool taken)> answer) {
  constexpr int patienceMilliseconds = 3'000;
  constexpr uint replacesNothing = 0;
  constexpr int standardDuration = -1;
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    QTimer::singleShot(0, [answer = std::move(answer)] { answer(false); });
    return;
  }
  auto message = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
  // The body may be markup; the words are not.
  message << application << replacesNothing << QStringLiteral("app.murmel.Murmel") << title
          << text.toHtmlEscaped() << QStringList() << QVariantMap() << standardDuration;
  auto* call = new QDBusPendingCallWatcher(bus.asyncCall(message, patienceMilliseconds));
  QObject::connect(call, &QDBusPendingCallWatcher::finished, call, [call, answer = std::move(answer)] {
    call->deleteLater();
    answer(!QDBusPendingReply<uint>(*call).isError());
  });
}

}  // namespace murmel
