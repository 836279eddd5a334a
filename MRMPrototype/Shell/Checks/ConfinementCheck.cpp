#include "Platform/ProcessLauncher.h"
#include "Shell/Checks/Checks.h"

#include <array>
#include <functional>
#include <set>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <poll.h>
#include <unistd.h>

namespace murmel {

namespace {

using Network = ProcessSandbox::Network;

/// Each kind of helper process as it is started, and what it is meant to reach.
struct Helper {
  std::string_view name;
  Network network = Network::none;
  bool startsCopies = false;
  std::set<std::string_view> meant;
};

const std::array helpers{
    Helper{"speech worker and corrector", Network::none, false, {}},
    Helper{"llama-server", Network::unixServer, false, {"sockets"}},
    Helper{"downloader and updater", Network::internet, false, {"internet"}},
    Helper{"clipboard keeper", Network::unixOnly, true, {"sockets", "copies"}},
};

/// What the probe tries to reach, in its words.
constexpr std::array<std::string_view, 7> reachable{"files",  "names",    "processes", "programs",
                                                    "copies", "internet", "sockets"};

std::string tableLine(std::string_view name, const std::function<std::string_view(std::string_view)>& cell) {
  auto line = fmt::format("{:28}", name);
  for (const auto what : reachable) line += fmt::format("{:10}", cell(what));
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

/// Everything that the child says, up to its end.
std::string said(int output) {
  constexpr int longest = 5'000;  // ms; it has a dozen calls to make
  std::string text;
  std::array<char, 512> piece{};
  pollfd waited{output, POLLIN, 0};
  while (::poll(&waited, 1, longest) > 0) {
    const auto count = ::read(output, piece.data(), piece.size());
    if (count <= 0) break;
    text.append(piece.data(), static_cast<std::size_t>(count));
  }
  return text;
}

struct Findings {
  std::vector<std::string> open{};  ///< "llama-server: names"
  bool seesNames = false;
  std::vector<std::string> table{};
  std::string failure{};
};

Findings examine(ProcessLauncher& launcher, const Installation& installation) {
  const auto probe = installation.folders.resources / "Workers" / "mrm-confinement-probe";
  if (!installation.policy.mayExecute(probe)) return {.failure = "the program that tries it is missing"};
  Findings findings;
  findings.table.push_back(tableLine("", [](auto what) { return what; }));
  for (const auto& helper : helpers) {
    const auto started = launcher.launch(
        {.executable = probe,
         .arguments = {installation.environment.value("HOME").value_or("/root"), std::to_string(::getpid())},
         .environment = {},
         .sandbox = {.network = helper.network, .startsCopies = helper.startsCopies}});
    if (!started) return {.failure = started.error()};
    const auto text = said((*started)->output());
    if (!text.ends_with("end\n")) return {.failure = std::string(helper.name) + " could not be tried"};
    std::set<std::string> reached;
    std::set<std::string, std::less<>> all;
    for (std::size_t at = 0; at < text.size() - 4;) {
      const auto end = text.find('\n', at);
      const auto what = text.substr(at, end - at);
      at = end + 1;
      all.insert(what);
      if (what == "names")
        findings.seesNames = true;
      else if (!helper.meant.contains(what))
        reached.insert(what);
    }
    findings.table.push_back(tableLine(helper.name, [&](auto what) {
      if (helper.meant.contains(what)) return std::string_view("needed");
      return std::string_view(all.contains(what) ? "OPEN" : "closed");
    }));
    if (!reached.empty())
      findings.open.push_back(fmt::format("{}: {}", helper.name, fmt::join(reached, ", ")));
  }
  return findings;
}

}  // namespace

Task<CheckResult> checkConfinement(CheckedServices services) {
  auto trying = services.queue.run([&launcher = services.launcher, &installation = services.installation] {
    return examine(launcher, installation);
  });
  const auto findings = co_await trying;
  if (!findings.failure.empty())
    co_return CheckResult{CheckState::broken, "Helper processes are not confined: " + findings.failure + "."};
  if (!findings.open.empty())
    co_return CheckResult{
        CheckState::limited,
        fmt::format("Helper processes can reach what they should not ({}).", fmt::join(findings.open, "; ")),
        findings.table};
  if (findings.seesNames)
    co_return CheckResult{
        CheckState::works,
        "No helper process reaches your files, other programs or a network it has no business "
        "with. They can see names of files: this system lets nobody make namespaces.",
        findings.table};
  co_return CheckResult{
      CheckState::works,
      "No helper process sees your files, other programs or a network it has no business with.",
      findings.table};
}

}  // namespace murmel
