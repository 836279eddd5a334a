#include "Platform/Qt/LogindSleepMonitor.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace murmel {

class LogindSleepMonitor::Listener final : public QObject {
  Q_OBJECT

 public:
  explicit Listener(const Signal<>& didWake) : didWake_(didWake) {
    auto bus = QDBusConnection::systemBus();
    // A container has no system bus, and does not suspend either.
    if (!bus.isConnected()) return;
    bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), this,
                SLOT(prepareForSleep(bool)));
  }

 private Q_SLOTS:
  /// `begins` is false when the suspend is over.
  void prepareForSleep(bool begins) {
    if (!begins) didWake_.emit();
  }

 private:
  const Signal<>& didWake_;
};

LogindSleepMonitor::LogindSleepMonitor() : listener_(std::make_unique<Listener>(didWake_)) {}

LogindSleepMonitor::~LogindSleepMonitor() = default;

}  // namespace murmel

#include "LogindSleepMonitor.moc"
