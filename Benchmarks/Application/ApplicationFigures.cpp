// usage: application-figures MURMEL [STARTS]
// Starts the application, as the panel of a desktop that shows tray icons, and prints how soon its icon is
// there, what it holds in memory and what it takes of a core at rest. To reach: 150 ms, 40 MB, 0 %.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>
#include <QThread>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

/// A panel, as far as an icon needs one.
class TrayWatcher final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
  Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
  Q_PROPERTY(int ProtocolVersion READ protocolVersion)
  Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

 public:
  [[nodiscard]] bool isHostRegistered() const { return true; }
  [[nodiscard]] int protocolVersion() const { return 0; }
  [[nodiscard]] QStringList items() const { return items_; }

 public Q_SLOTS:
  void RegisterStatusNotifierItem(const QString& service) {
    items_.append(service);
    Q_EMIT StatusNotifierItemRegistered(service);
  }

 Q_SIGNALS:
  void StatusNotifierItemRegistered(const QString& service);

 private:
  QStringList items_;
};

namespace {

namespace fs = std::filesystem;

bool waitUntil(const std::function<bool()>& condition, int limitMilliseconds) {
  QElapsedTimer elapsed;
  elapsed.start();
  while (!condition()) {
    if (elapsed.elapsed() > limitMilliseconds) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    QThread::usleep(200);
  }
  return true;
}

void waitFor(int milliseconds) {
  waitUntil([] { return false; }, milliseconds);
}

/// Time on a core of all threads, in seconds.
double processorSeconds(qint64 process) {
  double nanoseconds = 0;
  std::error_code gone;
  for (const auto& task : fs::directory_iterator("/proc/" + std::to_string(process) + "/task", gone)) {
    double ran = 0;
    std::ifstream(task.path() / "schedstat") >> ran;
    nanoseconds += ran;
  }
  return nanoseconds * 1e-9;
}

/// A figure of /proc/PROCESS/smaps_rollup in MB.
double memory(qint64 process, const std::string& key) {
  std::ifstream lines("/proc/" + std::to_string(process) + "/smaps_rollup");
  for (std::string word; lines >> word;) {
    double kilobytes = 0;
    if (word == key + ":" && lines >> kilobytes) return kilobytes / 1'024;
  }
  return 0;
}

/// Whichever thread has started them.
std::vector<qint64> childrenOf(qint64 process) {
  std::vector<qint64> children;
  std::error_code gone;
  for (const auto& task : fs::directory_iterator("/proc/" + std::to_string(process) + "/task", gone)) {
    std::ifstream list(task.path() / "children");
    for (qint64 child = 0; list >> child;) children.push_back(child);
  }
  return children;
}

/// Waits until it has taken next to nothing for a second: the model is verified and loaded.
bool waitForRest(qint64 process) {
  constexpr double nothing = 0.002;
  for (int second = 0; second < 30; ++second) {
    const double before = processorSeconds(process);
    waitFor(1'000);
    if (processorSeconds(process) - before < nothing && !childrenOf(process).empty()) return true;
  }
  return false;
}

}  // namespace

int main(int count, char** arguments) {
  const QCoreApplication application(count, arguments);
  if (count < 2) return 2;
  const int starts = count > 2 ? std::stoi(arguments[2]) : 10;
  auto bus = QDBusConnection::sessionBus();
  TrayWatcher watcher;
  if (!bus.registerObject("/StatusNotifierWatcher", &watcher, QDBusConnection::ExportAllContents) ||
      !bus.registerService("org.kde.StatusNotifierWatcher")) {
    std::fputs("no tray could be made\n", stderr);
    return 1;
  }

  std::vector<qint64> times;
  for (int start = 1; start <= starts; ++start) {
    QProcess murmel;
    const auto before = watcher.items().size();
    QElapsedTimer elapsed;
    elapsed.start();
    murmel.start(arguments[1], {});
    if (!waitUntil([&] { return watcher.items().size() > before; }, 20'000)) {
      std::fputs("its icon did not appear\n", stderr);
      return 1;
    }
    times.push_back(elapsed.elapsed());
    if (start == starts) {
      const auto process = murmel.processId();
      if (!waitForRest(process)) std::puts("it does not come to rest");
      std::printf("resident       %6.1f MB (%.1f MB its share; target 40 MB)\n", memory(process, "Rss"),
                  memory(process, "Pss"));
      for (const auto child : childrenOf(process))
        std::printf("its worker     %6.1f MB (%.1f MB its share)\n", memory(child, "Rss"),
                    memory(child, "Pss"));
      constexpr int seconds = 10;
      const double idle = processorSeconds(process);
      waitFor(seconds * 1'000);
      std::printf("idle           %6.3f %% of a core over %d s (target 0 %%)\n",
                  100 * (processorSeconds(process) - idle) / seconds, seconds);
    }
    murmel.terminate();
    murmel.waitForFinished(5'000);
  }
  std::ranges::sort(times);
  std::printf("start to tray  %6lld ms at the median of %d, worst %lld ms (target 150 ms)\n",
              static_cast<long long>(times[times.size() / 2]), starts, static_cast<long long>(times.back()));
  return 0;
}

#include "ApplicationFigures.moc"
