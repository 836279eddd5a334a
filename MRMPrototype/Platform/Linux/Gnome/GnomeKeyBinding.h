#pragma once

#include <string>

namespace murmel {

/// A key binding in GNOME's settings that runs `murmel toggle`, from here to the end of this. The user sees
/// it there. One at a time.
class GnomeKeyBinding {
 public:
  /// Whether GNOME's settings have such bindings.
  static bool isSupported();

  explicit GnomeKeyBinding(const std::string& accelerator);
  ~GnomeKeyBinding();
  GnomeKeyBinding(const GnomeKeyBinding&) = delete;
  GnomeKeyBinding& operator=(const GnomeKeyBinding&) = delete;

  [[nodiscard]] bool isSet() const { return isSet_; }

 private:
  bool isSet_ = false;
};

}  // namespace murmel
