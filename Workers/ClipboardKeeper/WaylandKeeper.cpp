#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/Wayland/DataControlDevice.h"
#include "Workers/ClipboardKeeper/Keeper.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <future>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>

namespace murmel {

namespace {

/// For readers that are still being given a large value when somebody else takes the clipboard.
constexpr auto afterglow = std::chrono::seconds(3);
/// How often it is seen whether the session has ended.
constexpr int endPollMilliseconds = 1'000;

class WaylandKeeper final : public Keeper {
 public:
  explicit WaylandKeeper(std::unique_ptr<WaylandConnection> connection) : loop_(std::move(connection)) {}
  ~WaylandKeeper() override { loop_.stop(); }
  WaylandKeeper(const WaylandKeeper&) = delete;
  WaylandKeeper& operator=(const WaylandKeeper&) = delete;

  bool open() {
    SelectionObserver clipboard{.read = [](const ClipboardRead&) {},
                                .changedByAnother =
                                    [this](std::int64_t) {
                                      if (serving_) ::eventfd_write(over_.get(), 1);
                                    }};
    SelectionObserver primary{.read = [](const ClipboardRead&) {}, .changedByAnother = [](std::int64_t) {}};
    device_ = DataControlDevice::open(loop_, clock_, std::move(clipboard), std::move(primary), nullptr);
    return device_ != nullptr;
  }

  void start() override { loop_.start(); }

  bool take() override {
    return ask([this] {
      serving_ = device_->clipboard().adopt(shared(std::move(kept_.contents)));
      return serving_.load();
    });
  }

  void serve() override {
    pollfd end{over_.get(), POLLIN, 0};
    while (::poll(&end, 1, endPollMilliseconds) <= 0) {
      if (ask([this] { return loop_.connection().hasFailed(); })) return;
    }
    std::this_thread::sleep_for(afterglow);
  }

 private:
  bool ask(std::function<bool()> question) {
    std::promise<bool> answer;
    auto answered = answer.get_future();
    loop_.enqueue([&answer, question = std::move(question)] { answer.set_value(question()); });
    return answered.get();
  }

  SystemClock clock_;
  UniqueDescriptor over_{::eventfd(0, EFD_CLOEXEC)};
  std::atomic<bool> serving_ = false;
  TransferLoop loop_;
  std::unique_ptr<DataControlDevice> device_;
};

}  // namespace

std::unique_ptr<Keeper> openWaylandKeeper() {
  auto connection = WaylandConnection::open();
  if (!connection) return nullptr;
  auto keeper = std::make_unique<WaylandKeeper>(*std::move(connection));
  return keeper->open() ? std::move(keeper) : nullptr;
}

}  // namespace murmel
