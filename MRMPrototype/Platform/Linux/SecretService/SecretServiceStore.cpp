#include "Platform/Linux/SecretService/SecretServiceStore.h"

#include "Platform/Linux/SecretService/SecretServiceConnection.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include <pthread.h>

namespace murmel {

namespace {

/// A service that has come back answers a probe in some milliseconds.
constexpr Duration recoveryLimit = std::chrono::milliseconds(50);

/// One call under way. It is shared, because whoever waits may give up before it has ended.
struct Job {
  std::move_only_function<void(SecretServiceConnection&, GCancellable*)> work;
  GlibPointer<GCancellable> cancellable{g_cancellable_new()};
};

}  // namespace

/// The thread and what it shares with the callers. It outlives the store when the service never answers.
struct SecretServiceStore::Worker {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::shared_ptr<Job>> jobs;
  std::shared_ptr<Job> running;
  bool answering = true;
  bool probing = false;
  bool stopping = false;
  bool ended = false;

  void run() {
    SecretServiceConnection connection;
    std::unique_lock lock(mutex);
    while (true) {
      changed.wait(lock, [this] { return stopping || !jobs.empty(); });
      if (stopping) break;
      running = std::move(jobs.front());
      jobs.pop_front();
      const auto job = running;
      lock.unlock();
      job->work(connection, job->cancellable.get());
      lock.lock();
      running.reset();
    }
    ended = true;
    changed.notify_all();
  }

  /// Finds out, on the thread, whether the service answers. With the mutex held.
  void probe() {
    if (probing) return;
    probing = true;
    auto job = std::make_shared<Job>();
    job->work = [this](SecretServiceConnection& connection, GCancellable* cancellable) {
      const bool answered = connection.probe(cancellable).has_value();
      const std::lock_guard lock(mutex);
      probing = false;
      answering = answered;
      changed.notify_all();
    };
    jobs.push_back(std::move(job));
    changed.notify_all();
  }
};

SecretServiceStore::SecretServiceStore(Duration limit) : limit_(limit), worker_(std::make_shared<Worker>()) {
  std::thread thread([worker = worker_] { worker->run(); });
  ::pthread_setname_np(thread.native_handle(), "secret-service");
  thread.detach();
}

SecretServiceStore::~SecretServiceStore() {
  std::unique_lock lock(worker_->mutex);
  worker_->stopping = true;
  worker_->jobs.clear();
  if (worker_->running) g_cancellable_cancel(worker_->running->cancellable.get());
  worker_->changed.notify_all();
  worker_->changed.wait_for(lock, limit_, [this] { return worker_->ended; });
}

template <class T>
std::expected<T, SecretStatus> SecretServiceStore::call(
    std::function<std::expected<T, SecretStatus>(SecretServiceConnection&, void*)> work) {
  auto answer = std::make_shared<std::optional<std::expected<T, SecretStatus>>>();
  auto job = std::make_shared<Job>();
  job->work = [worker = worker_.get(), work = std::move(work), answer](SecretServiceConnection& connection,
                                                                       GCancellable* cancellable) {
    auto result = work(connection, cancellable);
    const std::lock_guard lock(worker->mutex);
    answer->emplace(std::move(result));
    worker->changed.notify_all();
  };
  std::unique_lock lock(worker_->mutex);
  if (!worker_->answering) {
    const bool isFrozen = worker_->probing;
    worker_->probe();
    const auto isAnswered = [this] { return !worker_->probing; };
    if (isFrozen || !worker_->changed.wait_for(lock, recoveryLimit, isAnswered) || !worker_->answering)
      return std::unexpected(secretStatus::serviceUnavailable);
  }
  worker_->jobs.push_back(job);
  worker_->changed.notify_all();
  if (!worker_->changed.wait_for(lock, limit_, [&] { return answer->has_value(); })) {
    worker_->answering = false;
    std::erase(worker_->jobs, job);
    if (worker_->running) g_cancellable_cancel(worker_->running->cancellable.get());
    worker_->probe();
    return std::unexpected(secretStatus::serviceUnavailable);
  }
  return std::move(**answer);
}

std::expected<void, SecretStatus> SecretServiceStore::add(const std::string& service,
                                                          const std::string& account,
                                                          const SecretBytes& secret) {
  if (service.empty() || account.empty()) return std::unexpected(secretStatus::invalidParameter);
  const auto held = std::make_shared<SecretBytes>(secret.copy());
  return call<void>([service, account, held](SecretServiceConnection& connection, void* cancellable) {
    return connection.add(service, account, *held, static_cast<GCancellable*>(cancellable));
  });
}

std::expected<SecretBytes, SecretStatus> SecretServiceStore::find(const std::string& service,
                                                                  const std::string& account) {
  if (service.empty() || account.empty()) return std::unexpected(secretStatus::invalidParameter);
  return call<SecretBytes>([service, account](SecretServiceConnection& connection, void* cancellable) {
    return connection.find(service, account, static_cast<GCancellable*>(cancellable));
  });
}

std::expected<void, SecretStatus> SecretServiceStore::remove(const std::string& service,
                                                             const std::string& account) {
  if (service.empty() || account.empty()) return std::unexpected(secretStatus::invalidParameter);
  return call<void>([service, account](SecretServiceConnection& connection, void* cancellable) {
    return connection.remove(service, account, static_cast<GCancellable*>(cancellable));
  });
}

std::expected<void, SecretStatus> SecretServiceStore::unlock() {
  SecretServiceConnection connection;
  return connection.unlock();
}

}  // namespace murmel
