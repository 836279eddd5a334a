#include "Platform/Linux/Process/PreparedSandbox.h"

#include "Foundation/Crypto/Crypto.h"
#include "Platform/Linux/Confinement/CallLists.h"
#include "Platform/Linux/Confinement/Landlock.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace murmel {

namespace {

namespace fs = std::filesystem;

using confinement::CallNeeds;
using confinement::LandlockRules;
using Network = ProcessSandbox::Network;

/// What programs are loaded from.
constexpr std::array libraries{"/lib",       "/lib32",     "/lib64",        "/usr/lib",
                               "/usr/lib32", "/usr/lib64", "/usr/local/lib"};
constexpr std::array loaderFiles{"/etc/ld.so.cache", "/etc/ld.so.preload", "/etc/alternatives"};
/// What names are resolved and certificates checked by.
constexpr std::array internetFiles{"/etc/resolv.conf",
                                   "/etc/hosts",
                                   "/etc/host.conf",
                                   "/etc/nsswitch.conf",
                                   "/etc/gai.conf",
                                   "/etc/services",
                                   "/etc/protocols",
                                   "/etc/ssl",
                                   "/etc/pki",
                                   "/etc/ca-certificates",
                                   "/etc/crypto-policies",
                                   "/usr/share/ca-certificates",
                                   "/usr/local/share/ca-certificates"};

CallNeeds::Sockets socketsOf(Network network) {
  switch (network) {
    case Network::none:
      return CallNeeds::Sockets::none;
    case Network::unixServer:
      return CallNeeds::Sockets::serves;
    case Network::unixOnly:
      return CallNeeds::Sockets::unixOnly;
    case Network::internet:
      return CallNeeds::Sockets::internet;
  }
  std::unreachable();
}

bool allowFiles(LandlockRules& rules, const ProcessRequest& request, const std::vector<fs::path>& readable) {
  const auto& sandbox = request.sandbox;
  return std::ranges::all_of(libraries,
                             [&](const char* path) { return rules.allowReadingAndExecuting(path); }) &&
         rules.allowReadingAndExecuting(request.executable.parent_path()) &&
         std::ranges::all_of(readable, [&](const auto& path) { return rules.allowReading(path); }) &&
         std::ranges::all_of(sandbox.writable, [&](const auto& path) { return rules.allowWriting(path); }) &&
         (sandbox.socketFolder.empty() || rules.allowMakingSockets(sandbox.socketFolder)) &&
         rules.allowUsing("/dev/null");
}

std::vector<fs::path> allReadable(const ProcessSandbox& sandbox) {
  std::vector<fs::path> readable(loaderFiles.begin(), loaderFiles.end());
  readable.insert(readable.end(), sandbox.readable.begin(), sandbox.readable.end());
  if (sandbox.network == Network::internet)
    readable.insert(readable.end(), internetFiles.begin(), internetFiles.end());
#if defined(MURMEL_SANITIZED)
  readable.emplace_back("/proc");
#endif
  return readable;
}

PrivateRoot rootFor(const ProcessRequest& request, const std::vector<fs::path>& readable) {
  const auto& sandbox = request.sandbox;
  PrivateRoot root({.network = sandbox.network != Network::internet, .processes = !sandbox.startsCopies});
  // What can be written to comes first: a part of it that is also to be read is visible then.
  for (const auto& path : sandbox.writable) root.showWritable(path);
  root.showWritable(sandbox.socketFolder);
  for (const char* path : libraries) root.showReadable(path);
  root.showReadable(request.executable.parent_path());
  for (const auto& path : readable) root.showReadable(path);
  root.showDevice("/dev/null");
  return root;
}

/// What is to be written to is there, for its owner alone: the child itself could not make it.
void makeFolder(const fs::path& folder) {
  std::error_code missing;
  if (folder.empty() || fs::exists(folder, missing)) return;
  makeFolder(folder.parent_path());
  ::mkdir(folder.c_str(), S_IRWXU);  // where it cannot be made, the child tells why
}

}  // namespace

std::expected<PreparedSandbox, std::string> PreparedSandbox::of(const ProcessRequest& request,
                                                                const ConfinementPolicy& policy) {
  const std::unexpected<std::string> cannot("cannot confine the process");
  const auto readable = allReadable(request.sandbox);
  const int version = std::min(confinement::landlockVersion(), policy.newestLandlock);
  if (version < 1 && !(policy.allowsUnconfined && policy.allowsUnconfined()))
    return std::unexpected(
        "this system cannot keep it from the user's files (Landlock is missing); "
        "“murmel settings set security.allowUnconfinedWorkers true” lets it run all the same");
  for (const auto& folder : request.sandbox.writable) makeFolder(folder);
  PreparedSandbox prepared{.root = rootFor(request, readable)};
  if (version >= 1) {
    LandlockRules rules(version, request.sandbox.network == Network::internet);
    if (!rules.descriptor() || !allowFiles(rules, request, readable)) return cannot;
    prepared.landlock = rules.take();
    prepared.hasLandlock = true;
  }
  std::array<std::uint8_t, sizeof prepared.password> random{};
  if (!crypto::fillRandom(random)) return cannot;
  std::ranges::copy(random, reinterpret_cast<std::uint8_t*>(&prepared.password));
  auto calls = confinement::launchedProgram({.sockets = socketsOf(request.sandbox.network),
                                             .writes = !request.sandbox.writable.empty(),
                                             .forks = request.sandbox.startsCopies,
                                             .password = prepared.password});
  if (!calls) return cannot;
  prepared.calls = *std::move(calls);
  return prepared;
}

}  // namespace murmel
