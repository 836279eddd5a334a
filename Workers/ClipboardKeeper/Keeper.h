#pragma once

#include "Platform/Linux/Clipboard/ClipboardKeeper.h"

#include <memory>
#include <utility>

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
  virtual void serve() = 0;

 protected:
  ClipboardOrder kept_;
};

/// Null when the display of the environment cannot be reached.
std::unique_ptr<Keeper> openX11Keeper();
std::unique_ptr<Keeper> openWaylandKeeper();

}  // namespace murmel
