#include "Shell/DesktopServices.h"

#include <fstream>
#include <iterator>
#include <utility>

#include <unistd.h>

namespace murmel {

namespace {

/// The user's own lines about which application pastes with which keys, if there are any.
PasteChordTable pasteChords(const std::filesystem::path& configuration, LogSink& log,
                            const std::string& identifier) {
  PasteChordTable table;
  std::ifstream file(configuration / "MRM" / "paste-keys.conf", std::ios::binary);
  if (!file) return table;
  const std::string lines{std::istreambuf_iterator<char>(file), {}};
  const Logger logger(log, identifier, "text-insertion");
  for (const auto& line : table.addUserLines(lines)) {
    logger.event(LogLevel::notice, "paste_keys_line_not_understood", {{"line", line.number}});
  }
  return table;
}

}  // namespace

DesktopServices::DesktopServices(const Parameters& parameters)
    : microphone_(parameters.executor, {parameters.displayName, std::nullopt}),
      authorization_(PulseAudioAuthorization::Environment::current()),
      injectedKeys_(parameters.clock),
      focusedField_(parameters.executor),
      audio(parameters.executor, microphone_, authorization_, parameters.folders.temporary),
      sounds({parameters.displayName, std::nullopt}),
      keys(parameters.executor, injectedKeys_, X11KeyEnvironment::fromProcess()) {}

std::expected<std::unique_ptr<DesktopServices>, std::string> DesktopServices::open(Parameters parameters) {
  std::unique_ptr<DesktopServices> services(new DesktopServices(parameters));
  auto pasteboards = X11Pasteboards::open(parameters.executor, parameters.clock);
  if (!pasteboards) return std::unexpected(pasteboards.error());
  services->pasteboards_ = *std::move(pasteboards);
  auto workspace = X11Workspace::open(parameters.executor);
  if (!workspace) return std::unexpected(workspace.error());
  services->workspace_ = *std::move(workspace);
  auto keyboard = X11KeyboardPoster::open(parameters.executor, &services->injectedKeys_);
  if (!keyboard) return std::unexpected(keyboard.error());
  services->keyboard_ = *std::move(keyboard);
  auto secureInput = X11SecureInput::open();
  if (!secureInput) return std::unexpected(secureInput.error());
  services->secureInput_ = *std::move(secureInput);

  // From now on, because what has the focus already cannot be asked for later.
  services->focusedField_.connect();

  const TextInsertionDesktop desktop{
      .executor = parameters.executor,
      .clock = parameters.clock,
      .workspace = *services->workspace_,
      .keyboard = *services->keyboard_,
      .secureInput = *services->secureInput_,
      .general = services->pasteboards_->general(),
      .primary = &services->pasteboards_->primary(),
      .focusedField = &services->focusedField_,
  };
  TextInsertionOptions options{
      .applicationIdentifier = parameters.applicationIdentifier,
      .ownProcess = ::getpid(),
      .shouldRestorePreviousClipboard = parameters.restorePreviousClipboard,
      .pasteChords =
          pasteChords(parameters.folders.configuration, parameters.log, parameters.applicationIdentifier),
  };
  services->insertion = std::make_unique<TextInsertionService>(
      desktop, std::move(options),
      Logger(parameters.log, parameters.applicationIdentifier, "text-insertion"));
  return services;
}

Task<void> DesktopServices::handOverClipboard() {
  auto finishing = insertion->finishPasteCleanup();
  co_await finishing;
  auto handingOver = pasteboards_->general().handOver();
  co_await handingOver;
}

}  // namespace murmel
