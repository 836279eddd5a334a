#include "Platform/Linux/Wayland/DataControlDevice.h"
#include "Workers/ClipboardKeeper/Keeper.h"

#include <future>
#include <utility>

namespace murmel {

namespace {

class WaylandKeeper final : public Keeper {
 public:
  explicit WaylandKeeper(std::unique_ptr<WaylandConnection> connection) : loop_(std::move(connection)) {}
  ~WaylandKeeper() override { loop_.stop(); }
  WaylandKeeper(const WaylandKeeper&) = delete;
  WaylandKeeper& operator=(const WaylandKeeper&) = delete;

  bool open() {
    SelectionObserver clipboard{.read = [](const ClipboardRead&) {},
                                .changedByAnother = [this](std::int64_t) { lost(); }};
    SelectionObserver primary{.read = [](const ClipboardRead&) {}, .changedByAnother = [](std::int64_t) {}};
    device_ = DataControlDevice::open(loop_, clock_, std::move(clipboard), std::move(primary), nullptr);
    return device_ != nullptr;
  }

  void start() override {
    loop_.onFailure([this] { displayEnded(); });
    loop_.start();
  }

  bool take() override {
    std::promise<bool> answer;
    auto answered = answer.get_future();
    loop_.enqueue([this, &answer] {
      serving_ = device_->clipboard().adopt(shared(std::move(kept_.contents)));
      answer.set_value(serving_);
    });
    return answered.get();
  }

 private:
  SystemClock clock_;
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
