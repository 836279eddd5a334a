// Tries to escape from where it was started, and says what succeeded, one attempt a line, then "end" with the
// number of those it made. The arguments are the prey and the kinds of attempts to leave out; the
// command of a speech worker or the arguments of a corrector behind them make it a ready one of those first.

#include "EscapeAttempts.h"
#include "Workers/SageWorker/ReadyCorrector.h"
#include "Workers/SpeechWorker/Preparation.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

int main(int count, char** arguments) {
  constexpr int fixed = 9;
  if (count < fixed) return EXIT_FAILURE;
  const murmel::Prey prey{.file = arguments[1],
                          .socket = arguments[2],
                          .abstractSocket = arguments[3],
                          .port = static_cast<std::uint16_t>(std::atoi(arguments[4])),
                          .process = std::atoi(arguments[5]),
                          .sharedMemory = std::atoi(arguments[6]),
                          .messages = std::atoi(arguments[7])};
  std::string said;
  murmel::worker::LoadedEngine engine;
  std::expected<murmel::worker::ReadyCorrector, std::string> corrector;
  if (count > fixed) {
    const std::span<char* const> own(arguments + fixed, arguments + count);
    if (own[0] == std::string_view("--model-dir")) {
      corrector = murmel::worker::ReadyCorrector::prepare(own);
      if (!corrector) said += "not ready: " + corrector.error() + "\n";
    } else {
      engine = murmel::worker::preparedEngine(own);
      if (!engine) said += "not ready: " + engine.error() + "\n";
    }
  }
  const auto tried = murmel::tryToEscape(prey, arguments[8]);
  for (const auto& name : tried.succeeded) said += name + "\n";
  said += "end " + std::to_string(tried.count) + "\n";
  [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, said.data(), said.size());
  ::_exit(EXIT_SUCCESS);
}
