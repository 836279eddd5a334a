#pragma once

#include "Platform/LocalKeyMonitor.h"

namespace murmel {

/// The event tap of an X desktop hears the keys of our own windows as well, so nothing is left to monitor.
class NoLocalKeys final : public LocalKeyMonitor {
 public:
  [[nodiscard]] Registration add(Handler) override { return {}; }
};

}  // namespace murmel
