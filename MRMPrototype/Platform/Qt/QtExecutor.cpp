#include "Platform/Qt/QtExecutor.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimerEvent>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace murmel {

/// Takes posted jobs over into the event loop: one Qt event for as many jobs as there are by then. Has the
/// timers, which are no objects of their own: those would wait for the outermost loop to be deleted.
class QtExecutor::Receiver final : public QObject {
 public:
  Receiver() = default;
  ~Receiver() override {
    // What the jobs hold may stop timers when it goes.
    const auto posted = std::exchange(jobs_, {});
    const auto timers = std::exchange(timers_, {});
  }

  void post(Job job) {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
    if (!std::exchange(eventPosted_, true)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  }

  Registration startTimer(std::chrono::milliseconds delay, Job job) {
    const int timer = QObject::startTimer(delay, Qt::PreciseTimer);
    const auto serial = ++serial_;
    timers_.emplace(timer, Timer{serial, std::move(job)});
    return Registration([receiver = QPointer(this), timer, serial] {
      if (receiver) receiver->stopTimer(timer, serial);
    });
  }

 protected:
  void timerEvent(QTimerEvent* event) override {
    auto fired = timers_.extract(event->timerId());
    if (!fired) return;
    killTimer(event->timerId());
    fired.mapped().job();
  }

  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) return QObject::event(event);
    std::deque<Job> jobs;
    {
      const std::lock_guard lock(mutex_);
      jobs.swap(jobs_);
      eventPosted_ = false;
    }
    for (auto& job : jobs) {
      job();
      job = nullptr;
    }
    return true;
  }

 private:
  struct Timer {
    std::uint64_t serial;
    Job job;
  };

  /// Qt gives the number of a timer that is over to the next one.
  void stopTimer(int timer, std::uint64_t serial) {
    const auto found = timers_.find(timer);
    if (found == timers_.end() || found->second.serial != serial) return;
    killTimer(timer);
    const auto stopped = timers_.extract(found);
  }

  std::mutex mutex_;
  std::deque<Job> jobs_;
  bool eventPosted_ = false;
  std::map<int, Timer> timers_;
  std::uint64_t serial_ = 0;
};

QtExecutor::QtExecutor() : receiver_(std::make_unique<Receiver>()) {}

QtExecutor::~QtExecutor() = default;

void QtExecutor::post(Job job) {
  receiver_->post(std::move(job));
}

Registration QtExecutor::after(Duration delay, Job job) {
  // A whole millisecond more rather than less: a timer never fires early.
  return receiver_->startTimer(std::chrono::ceil<std::chrono::milliseconds>(delay), std::move(job));
}

Registration QtExecutor::watchReadable(int descriptor, std::move_only_function<void()> onReadable) {
  const QPointer notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, receiver_.get());
  QObject::connect(notifier, &QSocketNotifier::activated,
                   [handler = std::make_shared<std::move_only_function<void()>>(std::move(onReadable))] {
                     // It may end the watch.
                     // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
                     const auto keepAlive = handler;
                     (*keepAlive)();
                   });
  return Registration([notifier] {
    if (!notifier) return;
    notifier->setEnabled(false);
    notifier->disconnect();
    notifier->deleteLater();
  });
}

}  // namespace murmel
