#include "Platform/Linux/Wayland/WaylandPasteboards.h"

#include "Platform/Linux/Clipboard/SelectionPasteboard.h"
#include "Platform/Linux/Wayland/DataControlDevice.h"
#include "Platform/Linux/Wayland/TransferLoop.h"

#include <utility>

namespace murmel {

/// Everything that lives on the thread.
class WaylandPasteboards::Worker {
 public:
  explicit Worker(std::unique_ptr<WaylandConnection> connection) : loop(std::move(connection)) {}
  ~Worker() { loop.stop(); }  // before what its events reach goes
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  TransferLoop loop;
  std::unique_ptr<DataControlDevice> device;
};

/// The main thread's end of one selection.
class WaylandPasteboards::Pasteboard final : public SelectionPasteboard<TransferLoop, DataControlSelection> {
 public:
  using SelectionPasteboard::SelectionPasteboard;

  Task<ClipboardCapture> capture() override {
    return await<ClipboardCapture>(
        loop(), [selection = &selection()](auto done) mutable { selection->capture(std::move(done)); });
  }
  Task<std::optional<std::string>> data(std::string type) override {
    return await<std::optional<std::string>>(
        loop(), [selection = &selection(), type = std::move(type)](auto done) mutable {
          selection->data(type, std::move(done));
        });
  }
};

std::expected<std::unique_ptr<WaylandPasteboards>, std::string> WaylandPasteboards::open(
    Executor& executor, const Clock& clock, ClipboardKeeper* keeper) {
  auto connection = WaylandConnection::open();
  if (!connection) return std::unexpected(connection.error());
  const auto general = std::make_shared<SelectionEvents>();
  const auto primary = std::make_shared<SelectionEvents>();
  auto worker = std::make_unique<Worker>(*std::move(connection));
  worker->device = DataControlDevice::open(worker->loop, clock, SelectionEvents::observer(executor, general),
                                           SelectionEvents::observer(executor, primary), keeper);
  if (!worker->device) {
    return std::unexpected("The compositor lets no program without a window have the clipboard.");
  }
  std::unique_ptr<WaylandPasteboards> pasteboards(new WaylandPasteboards());
  pasteboards->general_ =
      std::make_unique<Pasteboard>(executor, general, worker->loop, worker->device->clipboard());
  if (auto* selection = worker->device->primary())
    pasteboards->primary_ = std::make_unique<Pasteboard>(executor, primary, worker->loop, *selection);
  worker->loop.start();
  pasteboards->worker_ = std::move(worker);
  return pasteboards;
}

WaylandPasteboards::WaylandPasteboards() = default;
WaylandPasteboards::~WaylandPasteboards() = default;

ClipboardPasteboard& WaylandPasteboards::general() {
  return *general_;
}

ClipboardPasteboard* WaylandPasteboards::primary() {
  return primary_.get();
}

}  // namespace murmel
