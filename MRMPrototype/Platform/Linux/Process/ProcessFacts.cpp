#include "Platform/Linux/Process/ProcessFacts.h"

#include <fstream>
#include <sstream>
#include <string>

namespace murmel {

std::optional<ProcessFacts> factsOf(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  if (!std::getline(file, line)) return std::nullopt;
  // The name in parentheses may itself contain spaces and parentheses.
  const auto nameEnd = line.rfind(')');
  if (nameEnd == std::string::npos) return std::nullopt;
  std::istringstream fields(line.substr(nameEnd + 1));
  ProcessFacts facts;
  fields >> facts.state;
  constexpr int fieldsBetween = 18;  // state is field 3, the start time field 22
  std::string skipped;
  for (int field = 0; field < fieldsBetween; ++field) fields >> skipped;
  fields >> facts.startTime;
  if (!fields) return std::nullopt;
  return facts;
}

bool hasEnded(pid_t process, std::uint64_t startTime) {
  if (startTime == 0) return false;
  const auto facts = factsOf(process);
  return !facts || facts->startTime != startTime || facts->hasEnded();
}

}  // namespace murmel
