#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>

namespace murmel {

/// What the system says about its network and its power, from NetworkManager and UPower. Asked without
/// waiting, and heard of afterwards; where nobody answers, the network is there and costs nothing, and the
/// power is mains. Main thread.
class SystemConditions final : public QObject {
  Q_OBJECT
 public:
  SystemConditions();

  [[nodiscard]] bool isOnline() const { return isOnline_; }
  [[nodiscard]] bool isMetered() const { return isMetered_; }
  [[nodiscard]] bool isOnBattery() const { return isOnBattery_; }

 private Q_SLOTS:
  void propertiesChanged(const QString& interface, const QVariantMap& changed,
                         const QStringList& invalidated);

 private:
  void watch(const QString& service, const QString& path);
  void take(const QString& name, const QVariant& value);

  bool isOnline_ = true;
  bool isMetered_ = false;
  bool isOnBattery_ = false;
};

}  // namespace murmel
