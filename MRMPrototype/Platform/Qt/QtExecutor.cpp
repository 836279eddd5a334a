#include "Platform/Qt/QtExecutor.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>
#include <deque>
#include <mutex>
#include <utility>

namespace murmel {

/// Takes posted jobs over into the event loop: one Qt event for as many jobs as there are by then.
class QtExecutor::Receiver final : public QObject {
 public:
  void post(Job job) {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
    if (!std::exchange(eventPosted_, true)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  }

 protected:
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
  std::mutex mutex_;
  std::deque<Job> jobs_;
  bool eventPosted_ = false;
};

QtExecutor::QtExecutor() : receiver_(std::make_unique<Receiver>()) {}

QtExecutor::~QtExecutor() = default;

void QtExecutor::post(Job job) {
  receiver_->post(std::move(job));
}

Registration QtExecutor::after(Duration delay, Job job) {
  const QPointer timer = new QTimer(receiver_.get());
  timer->setSingleShot(true);
  timer->setTimerType(Qt::PreciseTimer);
  QObject::connect(timer, &QTimer::timeout, [timer, job = std::make_shared<Job>(std::move(job))] {
    timer->deleteLater();
    const auto keepAlive = job;
    (*keepAlive)();
  });
  // A whole millisecond more rather than less: a timer never fires early.
  timer->start(std::chrono::ceil<std::chrono::milliseconds>(delay));
  return Registration([timer] {
    if (!timer) return;
    timer->disconnect();
    timer->stop();
    timer->deleteLater();
  });
}

Registration QtExecutor::watchReadable(int descriptor, std::move_only_function<void()> onReadable) {
  const QPointer notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, receiver_.get());
  QObject::connect(notifier, &QSocketNotifier::activated,
                   [handler = std::make_shared<std::move_only_function<void()>>(std::move(onReadable))] {
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
