// The tray of a desktop, without a picture: takes one status notifier item, and works its menu on request.
// Writes "ready", then "item" when one has come. Reads "menu", and answers with a line "menu ENTRY;ENTRY;…",
// where an entry that is disabled stands in brackets; "click ENTRY"; "opened ENTRY" and "closed ENTRY" for a
// menu inside it; "activate".

#include <QCoreApplication>
#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSocketNotifier>
#include <QStringList>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

struct Entry {
  int id = 0;
  QString label;
  bool isEnabled = true;
};

/// One item of com.canonical.dbusmenu's layout: (ia{sv}av).
void read(const QDBusArgument& argument, std::vector<Entry>& entries) {
  Entry entry;
  QVariantMap properties;
  argument.beginStructure();
  argument >> entry.id >> properties;
  entry.label = properties.value("label").toString();
  entry.isEnabled = properties.value("enabled", true).toBool();
  const bool isVisible = properties.value("visible", true).toBool();
  std::vector<Entry> below;
  if (isVisible && !entry.label.isEmpty()) entries.push_back(entry);
  argument.beginArray();
  while (!argument.atEnd()) {
    QDBusVariant child;
    argument >> child;
    read(child.variant().value<QDBusArgument>(), below);
  }
  if (isVisible) entries.insert(entries.end(), below.begin(), below.end());
  argument.endArray();
  argument.endStructure();
}

class Tray {
 public:
  void take(const QString& service) {
    service_ = service;
    const auto answer = call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                             {"org.kde.StatusNotifierItem", "Menu"});
    menuPath_ = answer.value<QDBusVariant>().variant().value<QDBusObjectPath>().path();
    std::cout << "item" << std::endl;
  }
  [[nodiscard]] std::vector<Entry> entries() const {
    std::vector<Entry> found;
    const auto message = send(menuPath_, "com.canonical.dbusmenu", "GetLayout", {0, -1, QStringList()});
    if (message.arguments().size() > 1) read(message.arguments().at(1).value<QDBusArgument>(), found);
    return found;
  }
  void click(const QString& label, const char* event = "clicked") const {
    for (const auto& entry : entries()) {
      if (entry.label != label) continue;
      if (event == std::string("opened"))
        send(menuPath_, "com.canonical.dbusmenu", "AboutToShow", {entry.id});
      send(menuPath_, "com.canonical.dbusmenu", "Event",
           {entry.id, event, QVariant::fromValue(QDBusVariant(0)), 0U});
    }
  }
  void activate() const { send("/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", {0, 0}); }

 private:
  QDBusMessage send(const QString& path, const QString& interface, const QString& method,
                    const QVariantList& arguments) const {
    auto message = QDBusMessage::createMethodCall(service_, path, interface, method);
    message.setArguments(arguments);
    const auto answer = QDBusConnection::sessionBus().call(message);
    if (answer.type() == QDBusMessage::ErrorMessage)
      std::cout << "error " << answer.errorMessage().toStdString() << std::endl;
    return answer;
  }
  [[nodiscard]] QVariant call(const QString& path, const QString& interface, const QString& method,
                              const QVariantList& arguments) const {
    return send(path, interface, method, arguments).arguments().value(0);
  }

  QString service_, menuPath_;
};

class Watcher final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
  Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
  Q_PROPERTY(int ProtocolVersion READ protocolVersion)

 public:
  Watcher(QObject* parent, Tray& tray) : QDBusAbstractAdaptor(parent), tray_(tray) {}
  [[nodiscard]] bool isHostRegistered() const { return true; }
  [[nodiscard]] int protocolVersion() const { return 0; }

 public Q_SLOTS:
  void RegisterStatusNotifierItem(const QString& service) {
    // After the answer: the item waits for it.
    QMetaObject::invokeMethod(
        this, [this, service] { tray_.take(service); }, Qt::QueuedConnection);
  }

 private:
  Tray& tray_;
};

void obey(const std::string& line, const Tray& tray) {
  const std::string click = "click ";
  if (line.starts_with(click)) tray.click(QString::fromStdString(line.substr(click.size())));
  for (const char* event : {"opened", "closed"}) {
    const auto word = event + std::string(" ");
    if (line.starts_with(word)) tray.click(QString::fromStdString(line.substr(word.size())), event);
  }
  if (line == "activate") tray.activate();
  if (line == "menu") {
    QStringList entries;
    for (const auto& entry : tray.entries())
      entries += entry.isEnabled ? entry.label : "[" + entry.label + "]";
    std::cout << "menu " << entries.join(';').toStdString() << std::endl;
  }
}

}  // namespace

int main(int argumentCount, char** arguments) {
  // What waits in a buffer does not make the descriptor readable.
  std::setvbuf(stdin, nullptr, _IONBF, 0);
  QCoreApplication application(argumentCount, arguments);
  Tray tray;
  QObject object;
  new Watcher(&object, tray);
  auto bus = QDBusConnection::sessionBus();
  if (!bus.registerObject("/StatusNotifierWatcher", &object, QDBusConnection::ExportAdaptors) ||
      !bus.registerService("org.kde.StatusNotifierWatcher"))
    return 1;
  QSocketNotifier commands(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&commands, &QSocketNotifier::activated, [&] {
    std::string line;
    if (std::getline(std::cin, line)) {
      obey(line, tray);
    } else {
      QCoreApplication::quit();
    }
  });
  std::cout << "ready" << std::endl;
  return QCoreApplication::exec();
}

#include "StatusNotifierHost.moc"
