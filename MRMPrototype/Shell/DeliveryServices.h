#pragma once

#include "Delivery/TextInsertionService.h"
#include "Settings/SettingsRepository.h"
#include "Shell/DesktopServices.h"
#include "Shell/Installation.h"

namespace murmel {

/// The delivery of text, made of a desktop and of what the user has chosen. The references outlive it.
class DeliveryServices {
 public:
  DeliveryServices(const ProcessServices& process, const Installation& installation,
                   const DesktopServices& desktop, SettingsRepository& settings);

  TextInsertionService insertion;

 private:
  Registration observer_;
};

}  // namespace murmel
