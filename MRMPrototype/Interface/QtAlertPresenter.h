#pragma once

#include "Interface/AlertPresenter.h"

namespace murmel {

/// Alerts as message boxes that do not block.
class QtAlertPresenter final : public AlertPresenter {
 public:
  void show(Alert alert, std::function<void(bool accepted)> answer) override;
};

}  // namespace murmel
