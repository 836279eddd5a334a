#pragma once

#include "Interface/Settings/SettingsServices.h"

#include <filesystem>
#include <string>

namespace murmel {

/// Starts the application with the session by a desktop entry in the user's autostart folder. An entry there
/// that switches off one of the system is undone by removing it, and made when there is one to switch off.
class XdgAutostart final : public Autostart {
 public:
  struct Entry {
    std::string identifier;  ///< of the application; names the file
    std::string displayName;
    std::filesystem::path executable;
  };

  /// `configuration`: $XDG_CONFIG_HOME; `systemFolder`: where packages put entries for all users.
  XdgAutostart(const std::filesystem::path& configuration, Entry entry,
               const std::filesystem::path& systemFolder = "/etc/xdg/autostart");

  [[nodiscard]] bool isOn() const override;
  std::expected<void, std::string> set(bool on) override;

 private:
  [[nodiscard]] bool isForAllUsers() const;

  Entry entry_;
  std::filesystem::path file_;
  std::filesystem::path systemFile_;
};

}  // namespace murmel
