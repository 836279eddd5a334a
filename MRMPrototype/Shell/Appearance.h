#pragma once

#include "Interface/Common/Style.h"
#include "Platform/Qt/PortalAppearance.h"

#include <QTranslator>
#include <filesystem>

namespace murmel {

/// The looks of every window: one style, light or dark as the desktop wishes and whenever it changes its
/// mind, and the user's language. Main thread; needs a QApplication for as long as it lives.
class Appearance {
 public:
  explicit Appearance(const std::filesystem::path& resources);

 private:
  void apply();

  Style* style_ = nullptr;  ///< Qt owns it
  bool isDesktopDark_;      ///< by the colours that the desktop's own theme gave us
  PortalAppearance portal_;
  QTranslator own_;
  QTranslator toolkit_;
  Registration changes_;
};

}  // namespace murmel
