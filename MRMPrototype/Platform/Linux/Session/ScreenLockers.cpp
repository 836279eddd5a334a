#include "Platform/Linux/Process/ProcessFacts.h"
#include "Platform/Linux/Session/SessionProbe.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

namespace murmel {

namespace {

/// As the kernel names them, which keeps fifteen letters.
constexpr std::array<std::string_view, 6> lockers = {"swaylock", "gtklock", "hyprlock",
                                                     "waylock",  "schlock", "physlock"};

/// Whether a process may be one of this session: it was given the same screen, or does not show what it was
/// given.
bool isOfThisSession(const std::filesystem::path& process) {
  std::ifstream file(process / "environ", std::ios::binary);
  for (std::string variable; std::getline(file, variable, '\0');) {
    for (const std::string name : {"WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"}) {
      const auto* ours = std::getenv(name.c_str());
      if (ours != nullptr && variable.starts_with(name + "=") && variable != name + "=" + ours) return false;
    }
  }
  return true;
}

}  // namespace

bool screenLockerRuns() {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
    const auto name = entry.path().filename().native();
    if (!std::ranges::all_of(name, [](char character) { return character >= '0' && character <= '9'; }))
      continue;
    struct stat about {};
    // Another user's locker is on another session's screen.
    if (::stat(entry.path().c_str(), &about) != 0 || about.st_uid != ::getuid()) continue;
    std::ifstream file(entry.path() / "comm");
    std::string program;
    if (!std::getline(file, program) || std::ranges::find(lockers, program) == lockers.end()) continue;
    // One that has ended stays until its parent asks for it, the helper that checks its passwords, too.
    const auto facts = factsOf(std::stoi(name));
    if (facts && !facts->hasEnded() && isOfThisSession(entry.path())) return true;
  }
  return false;
}

}  // namespace murmel
