#include "Contract/ProcessLauncher/ChildOutput.h"
#include "EscapeAttempts.h"
#include "Platform/Linux/Confinement/Landlock.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Support/BuildPaths.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <arpa/inet.h>
#include <sys/msg.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/un.h>

using Network = ProcessSandbox::Network;

namespace {

/// Everything that an escaping program would like to reach.
class World {
 public:
  World() {
    prey_.file = (folder_.path() / "letter").string();
    std::ofstream(prey_.file) << "a secret";
    std::filesystem::create_symlink("letter", prey_.file + ".link");
    prey_.socket = (folder_.path() / "socket").string();
    prey_.abstractSocket = "murmel-test-" + folder_.path().filename().string();
    listenAt(prey_.socket);
    listenAt(std::string(1, '\0') + prey_.abstractSocket);
    sockaddr_in address{};
    socklen_t size = sizeof address;
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int server = opened(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(::bind(server, reinterpret_cast<sockaddr*>(&address), size), 0);
    EXPECT_EQ(::listen(server, 8), 0);
    ::getsockname(server, reinterpret_cast<sockaddr*>(&address), &size);
    prey_.port = ntohs(address.sin_port);
    prey_.process = ::getpid();
    prey_.sharedMemory = ::shmget(IPC_PRIVATE, 4'096, 0600);
    prey_.messages = ::msgget(IPC_PRIVATE, 0600);
    const struct {
      long kind = 1;
      char text[8] = "secret";
    } message;
    EXPECT_EQ(::msgsnd(prey_.messages, &message, sizeof message.text, 0), 0);
  }
  ~World() {
    ::shmctl(prey_.sharedMemory, IPC_RMID, nullptr);
    ::msgctl(prey_.messages, IPC_RMID, nullptr);
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  [[nodiscard]] Strings arguments(const std::string& sparedKinds) const {
    return {prey_.file,
            prey_.socket,
            prey_.abstractSocket,
            std::to_string(prey_.port),
            std::to_string(prey_.process),
            std::to_string(prey_.sharedMemory),
            std::to_string(prey_.messages),
            sparedKinds};
  }
  [[nodiscard]] const Prey& prey() const { return prey_; }

 private:
  int opened(int socket) {
    sockets_.emplace_back(socket);
    return socket;
  }
  void listenAt(const std::string& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    name.copy(address.sun_path, sizeof address.sun_path - 1);
    const int server = opened(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const auto size = offsetof(sockaddr_un, sun_path) + name.size();
    EXPECT_EQ(::bind(server, reinterpret_cast<sockaddr*>(&address), static_cast<socklen_t>(size)), 0);
    EXPECT_EQ(::listen(server, 8), 0);
  }

  TemporaryFolder folder_;
  Prey prey_;
  std::vector<UniqueDescriptor> sockets_;
};

std::filesystem::path escapingChild() {
  return buildFolder() + "/tests/workers/escaping-child";
}

/// As each child is started, with what it is not held to: n, u, f and x as the attempts have them.
struct Confined {
  std::string who;
  ProcessSandbox sandbox;
  const char* spared;
  /// What makes it a ready worker before it tries: the command of a speech worker, or a corrector's
  /// arguments.
  Strings ready{};
};

std::vector<Confined> children(const std::filesystem::path& own) {
  const auto ready = [](const char* who, const std::filesystem::path& model) {
    const auto worker = resourcesFolder() + "/Workers/mrm-fluidaudio-worker";
    return Confined{std::string("ready speech worker, ") + who,
                    {.readable = {model, resourcesFolder() + "/Workers"}},
                    "",
                    {worker, "--model-dir", model, "--precision", "int8"}};
  };
  std::vector<Confined> rows{
      {"speech worker, corrector", {.readable = {own}}, "x"},
      {"llama-server", {.readable = {own}, .socketFolder = own, .network = Network::unixServer}, "x"},
      {"downloader, updater on the way", {.writable = {own}, .network = Network::internet}, "nx"},
      {"updater at work", {.writable = {own}}, "x"},
      {"clipboard keeper", {.readable = {own}, .network = Network::unixOnly, .startsCopies = true}, "fx"},
      ready("pocketsphinx", "/usr/share/pocketsphinx/model/en-us"),
  };
  for (const char* name : {"tiny-parakeet", "whisper-base"}) {
    const auto model = buildFolder() + "/tests/models/" + name;
    if (std::filesystem::exists(model)) rows.push_back(ready(name, model));
  }
  const auto runtime = sourceFolder() + "/build/onnxruntime/libonnxruntime.so";
  const auto model = buildFolder() + "/tests/sage-models/good";
  if (std::filesystem::exists(runtime))
    rows.push_back({"ready corrector",
                    {.readable = {model, runtime}},
                    "",
                    {"--model-dir", model, "--runtime", runtime}});
  return rows;
}

Strings escapes(const Confined& child, ConfinementPolicy policy) {
  const World world;
  auto arguments = world.arguments(child.spared);
  arguments.insert(arguments.end(), child.ready.begin(), child.ready.end());
  LinuxProcessLauncher launcher(policy);
  const auto launched = launcher.launch(
      {.executable = escapingChild(), .arguments = arguments, .environment = {}, .sandbox = child.sandbox});
  if (!launched) return {launched.error()};
  ChildOutput output((*launched)->output());
  Strings succeeded;
  while (const auto line = output.line()) {
    if (!line->starts_with("end ")) {
      succeeded.push_back(*line);
      continue;
    }
    constexpr int fewest = 70;
    if (std::stoi(line->substr(4)) < fewest) succeeded.emplace_back("hardly tried");
    return succeeded;
  }
  succeeded.emplace_back("ended early");
  return succeeded;
}

class Confinement : public ::testing::Test {
 protected:
  static void expectNoEscape(ConfinementPolicy policy, const Strings& inevitable = {}) {
    const TemporaryFolder own;
    for (const auto& child : children(own.path())) {
      auto succeeded = escapes(child, policy);
      std::erase_if(succeeded, [&](const auto& name) { return std::ranges::count(inevitable, name) > 0; });
#if defined(MURMEL_SANITIZED)
      // What the instrumentation needs is let through.
      for (const char* name : {"read a process's arguments", "change the personality", "signal a thread"})
        std::erase(succeeded, name);
#endif
      EXPECT_EQ(succeeded, Strings{}) << child.who;
    }
  }
};

}  // namespace

TEST_F(Confinement, TriesWhatSucceedsElsewhere) {
  const World world;
  EXPECT_TRUE(contains(tryToEscape(world.prey(), "", /*eachInAFork=*/true).succeeded,
                       {"read a file", "truncate a file", "stat a file", "change a mode", "change times",
                        "fork", "execute a program", "signal a process", "limit a process",
                        "attach shared memory", "read a message queue", "connect", "reach a Unix socket",
                        "reach an abstract socket", "map executable memory"}));
}

TEST_F(Confinement, HoldsEveryChild) {
  if (confinement::landlockVersion() < 1) GTEST_SKIP() << "no Landlock here";
  expectNoEscape({});
}

TEST_F(Confinement, HoldsEveryChildWithAnOldLandlock) {
  if (confinement::landlockVersion() < 1) GTEST_SKIP() << "no Landlock here";
  expectNoEscape({.newestLandlock = 2});
}

TEST_F(Confinement, HoldsWithoutNamespacesButForNames) {
  if (confinement::landlockVersion() < 1) GTEST_SKIP() << "no Landlock here";
  // Nothing but a file system of its own keeps a path from being looked at, and a listening socket from being
  // found by who may connect.
  expectNoEscape({.newestLandlock = 2, .usesNamespaces = false},
                 {"stat a file", "statx a file", "access a file", "read a link", "ask for the file system",
                  "enter a folder", "reach a Unix socket", "reach an abstract socket"});
}

TEST_F(Confinement, IsNotClaimedWithoutLandlock) {
  LinuxProcessLauncher strict({.newestLandlock = 0});
  const auto refused = strict.launch({escapingChild(), {}, {}});
  ASSERT_FALSE(refused.has_value());
  EXPECT_TRUE(contains(refused.error(), "security.allowUnconfinedWorkers"));
  LinuxProcessLauncher lenient({.allowsUnconfined = [] { return true; }, .newestLandlock = 0});
  EXPECT_TRUE(lenient.launch({escapingChild(), {}, {}}).has_value());
}
