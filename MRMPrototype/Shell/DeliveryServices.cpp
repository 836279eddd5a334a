#include "Shell/DeliveryServices.h"

#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

namespace murmel {

namespace {

/// The user's own lines about which application pastes with which keys, if there are any.
PasteChordTable pasteChords(const std::filesystem::path& configuration, const Logger& logger) {
  PasteChordTable table;
  std::ifstream file(configuration / "MRM" / "paste-keys.conf", std::ios::binary);
  if (!file) return table;
  const std::string lines{std::istreambuf_iterator<char>(file), {}};
  for (const auto& line : table.addUserLines(lines)) {
    logger.event(LogLevel::notice, "paste_keys_line_not_understood", {{"line", line.number}});
  }
  return table;
}

}  // namespace

DeliveryServices::DeliveryServices(const ProcessServices& process, const Installation& installation,
                                   const DesktopServices& desktop, SettingsRepository& settings)
    : insertion(
          TextInsertionDesktop{
              .executor = process.executor,
              .clock = process.clock,
              .workspace = desktop.workspace,
              .keyboard = desktop.keyboard,
              .secureInput = desktop.secureInput,
              .general = desktop.clipboard,
              .primary = desktop.primarySelection,
              .focusedField = &desktop.focusedField,
          },
          TextInsertionOptions{
              .applicationIdentifier = installation.identifier,
              .ownProcess = ::getpid(),
              .shouldRestorePreviousClipboard = settings.restorePreviousClipboard(),
              .pasteChords = pasteChords(installation.folders.configuration,
                                         Logger(process.log, installation.identifier, "text-insertion")),
          },
          Logger(process.log, installation.identifier, "text-insertion")),
      observer_(settings.didChange().subscribe([this, &settings](SettingsProperty property) {
        if (property == SettingsProperty::restorePreviousClipboard)
          insertion.setRestoresPreviousClipboard(settings.restorePreviousClipboard());
        if (property == SettingsProperty::spaceBetweenDictations)
          insertion.spacing().setEnabled(settings.spaceBetweenDictations());
      })) {
  insertion.spacing().setEnabled(settings.spaceBetweenDictations());
}

}  // namespace murmel
