#pragma once

#include "Delivery/TextInsertionService.h"
#include "Shell/DesktopServices.h"
#include "Shell/Installation.h"

namespace murmel {

/// The delivery of text, made of a desktop and of what the user has chosen.
class DeliveryServices {
 public:
  DeliveryServices(const ProcessServices& process, const Installation& installation,
                   const DesktopServices& desktop, bool restorePreviousClipboard);

  TextInsertionService insertion;
};

}  // namespace murmel
