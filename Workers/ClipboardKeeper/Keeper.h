#pragma once

#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/Clipboard/ClipboardKeeper.h"

#include <atomic>
#include <memory>
#include <utility>

#include <sys/eventfd.h>

namespace murmel {

/// Serves on one kind of display what it was told to keep.
class Keeper {
 public:
  virtual ~Keeper() = default;
  void keep(ClipboardOrder order) { kept_ = std::move(order); }
  [[nodiscard]] bool hasContents() const { return !kept_.contents.items.empty(); }

  /// Begins to listen to the display.
  virtual void start() = 0;
  /// Serves from now on. False when somebody else has written to the clipboard since.
  virtual bool take() = 0;
  /// Returns when there is nothing left to serve.
  void serve();

 protected:
  /// Somebody else has written to the clipboard. From here on any thread.
  void lost() {
    if (serving_) ::eventfd_write(over_.get(), 1);
  }
  /// Nobody is there any more who could read.
  void displayEnded() {
    displayHasEnded_ = true;
    ::eventfd_write(over_.get(), 1);
  }

  ClipboardOrder kept_;
  std::atomic<bool> serving_ = false;

 private:
  std::atomic<bool> displayHasEnded_ = false;
  UniqueDescriptor over_{::eventfd(0, EFD_CLOEXEC)};
};

/// Null when the display of the environment cannot be reached.
std::unique_ptr<Keeper> openX11Keeper();
std::unique_ptr<Keeper> openWaylandKeeper();

}  // namespace murmel
