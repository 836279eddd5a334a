#include "Shell/PermissionService.h"

#include "Shortcut/HotkeyService.h"

#include <utility>

namespace murmel {

PermissionService::PermissionService(const DesktopServices& desktop,
                                     std::function<ShortcutConfiguration()> shortcut)
    : desktop_(desktop),
      shortcut_(std::move(shortcut)),
      current_(look()),
      sourceObserver_(desktop.shortcuts.permissionDidChange().subscribe([this] { refresh(); })) {}

Permissions PermissionService::look() {
  const auto shortcut = shortcut_();
  const bool isDisabled = shortcut.kind == ShortcutConfiguration::Kind::disabled;
  return {
      .microphone = desktop_.microphoneAuthorization.phase(),
      // A disabled shortcut needs no permission.
      .shortcut = isDisabled || desktop_.shortcuts.permission(shortcutRequest(shortcut)).granted,
      .automaticPaste = desktop_.keyboard.mayPost(),
  };
}

void PermissionService::refresh() {
  const auto before = std::exchange(current_, look());
  if (before == current_) return;
  const auto now = current_;
  didChange_.emit(before, now);
  if (before.shortcut != now.shortcut) inputMonitoringDidChange_.emit();
}

}  // namespace murmel
