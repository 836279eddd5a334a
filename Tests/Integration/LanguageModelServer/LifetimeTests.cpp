#include "Integration/LanguageModelServer/ServerBench.h"
#include "Support/ChildProgram.h"
#include "Support/FileBytes.h"

#include <sys/socket.h>
#include <sys/un.h>

namespace {

void bindStaleSocket(const std::filesystem::path& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.native().copy(address.sun_path, sizeof address.sun_path - 1);
  const UniqueDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
  ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
}

}  // namespace

TEST_F(ServerBench, PassesThroughItsStates) {
  script("start loading 3\nstart print-megabytes 2\nanswer format");
  EXPECT_EQ(diagnostic(), "idle");
  EXPECT_EQ(pool().preparationStatus(model), std::nullopt);
  pool().activate(model);
  EXPECT_EQ(pool().preparationStatus(model), "Preparing for fast dictation…");
  EXPECT_EQ(refine("hello"), "RAW") << "a server that loads its model keeps nobody waiting";
  ASSERT_TRUE(prepare());
  EXPECT_EQ(count("loading"), 3U);
  EXPECT_EQ(pool().preparationStatus(model), "Ready · kept warm in memory");
  EXPECT_EQ(diagnostic(), "process running on private local socket");
  pool().activate(model);
  EXPECT_EQ(refine("hello"), "Hello.");
  pool().shutdownAll();
  EXPECT_EQ(diagnostic(), "idle");
  EXPECT_EQ(pool().preparationStatus(model), std::nullopt);
  ASSERT_TRUE(prepare()) << "a server that was shut down can be started again";
  EXPECT_EQ(count("listening"), 2U);
}

TEST_F(ServerBench, StartsAgainAfterEveryWayToFail) {
  struct Row {
    const char* script;
    const char* diagnostic;
  };
  settings.limits.readiness = 300ms;
  settings.limits.readinessProbe = 50ms;
  for (const auto& [commands, expected] : std::vector<Row>{
           {"start exit 0", "inference server exited while starting"},
           {"start exit 1", "inference server exited while starting"},
           {"start stall", "inference server did not become ready"},
           {"start unhealthy", "inference server did not become ready"},
           {"start loading 1000000", "inference server did not become ready"},
       }) {
    script(commands);
    EXPECT_FALSE(prepare()) << commands;
    EXPECT_EQ(diagnostic(), expected) << commands;
    EXPECT_EQ(pool().preparationStatus(model), "Preparation failed · original text remains available");
  }
  releasePool();
  settings.limits.readiness = 30s;
  script("answer format");
  EXPECT_TRUE(prepare());
  EXPECT_EQ(refine("hello"), "Hello.");
}

TEST_F(ServerBench, ReplacesAProcessThatHasEnded) {
  script("start leave-child\nanswer format");
  ASSERT_TRUE(prepare());
  EXPECT_EQ(refine("hello"), "Hello.");
  script("start close-output\nanswer format\nanswer die");
  ::kill(onlyChild(), SIGKILL);  // while nobody asks, its output still open
  ASSERT_TRUE(executor.waitUntil([&] { return count("listening") == 2; }));
  ASSERT_TRUE(prepare());
  EXPECT_EQ(refine("hello"), "Hello.") << "what has closed its output has not ended";
  EXPECT_EQ(refine("hello"), "RAW") << "ends during a request";
  ASSERT_TRUE(executor.waitUntil([&] { return count("listening") == 3; }));
  ASSERT_TRUE(prepare());
  EXPECT_EQ(leftBehind().size(), 2U) << "one socket and one folder";
  EXPECT_EQ(failures, (std::vector<std::string>{"model process exited", "model process exited"}));
}

TEST_F(ServerBench, ReplacesAProcessThatHangs) {
  settings.limits.asking.request = 300ms;
  script("answer format");
  ASSERT_TRUE(prepare());
  EXPECT_EQ(refine("hello"), "Hello.");
  ::kill(onlyChild(), SIGSTOP);
  EXPECT_EQ(refine("hello"), "RAW");
  EXPECT_EQ(refine("hello"), "RAW");
  const auto before = clock.now();
  refine("hello");
  EXPECT_LT(clock.now() - before, settings.limits.asking.request) << "nobody waits for it any longer";
  ASSERT_TRUE(prepare());
  EXPECT_EQ(failures, std::vector<std::string>{"two answers in a row took too long"});
  settings.limits.asking.request = 30s;
  EXPECT_EQ(count("listening"), 2U);
}

TEST_F(ServerBench, TriesMoreAndMoreSeldomWhatNeverAnswers) {
  settings.limits.asking.firstPause = 24h;
  script("start exit 1");
  EXPECT_FALSE(prepare());
  EXPECT_EQ(pool().failure(model), "inference server exited while starting");
  script("answer format");
  EXPECT_FALSE(prepare()) << "it is too early";
  EXPECT_EQ(refine("hello"), "RAW");
  EXPECT_TRUE(notes().empty() || count("listening") == 0);
  pool().shutdownAll();
  EXPECT_TRUE(prepare()) << "somebody has switched it off and on";
  EXPECT_EQ(pool().failure(model), "");
}

TEST_F(ServerBench, RefusesWhatItMayNotExecute) {
  script("answer format");
  settings.runtime.mayExecute = [](const std::filesystem::path&) { return false; };
  EXPECT_FALSE(prepare());
  EXPECT_EQ(diagnostic(), "running inference server identity validation failed");
  EXPECT_TRUE(notes().empty()) << "it was started all the same";
}

TEST_F(ServerBench, SaysThatTheModelIsNotInstalled) {
  constexpr auto missing = "Smart Local model or runtime is not installed";
  QwenLocalRefinementProvider other(pool().server(SmartLocalModel::qwen4), /*prewarmed=*/true);
  Awaiting<Answer> asking(refining(other, "hello"));
  EXPECT_EQ(described(asking), missing);
  EXPECT_EQ(pool().server(SmartLocalModel::qwen4)->diagnostic(), missing);
  releasePool();
  settings.runtime.executable = store.path() / "missing";
  EXPECT_EQ(refine("hello"), missing);
  EXPECT_FALSE(prepare());
  releasePool();
  settings.runtime.executable = store.write("script", {});
  EXPECT_FALSE(prepare());
  EXPECT_EQ(diagnostic(), "the executable is not a program");
}

TEST_F(ServerBench, KeepsItsKeyToItself) {
  script("start loading 1\nanswer format");
  ASSERT_TRUE(prepare());
  const auto key = noted("key");
  EXPECT_EQ(key.size(), 64U);
  EXPECT_EQ(noted("modes"), "600 700") << "of the key's file and its folder";
  const auto process = std::filesystem::path("/proc") / std::to_string(onlyChild());
  EXPECT_FALSE(contentsOf(process / "cmdline").empty());
  EXPECT_EQ(contentsOf(process / "cmdline").find(key), std::string::npos);
  EXPECT_EQ(contentsOf(process / "environ"), std::string("GOMP_SPINCOUNT=3000\0", 20));
  for (const auto& entry : std::filesystem::recursive_directory_iterator(temporary.path())) {
    EXPECT_FALSE(entry.is_regular_file()) << "the server has read its key: " << entry.path();
    struct stat status {};
    ASSERT_EQ(::lstat(entry.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & (S_IRWXG | S_IRWXO), 0U) << entry.path();
  }
  releasePool();
  ASSERT_TRUE(prepare());
  EXPECT_NE(noted("key"), key) << "a new one at every start";
}

TEST_F(ServerBench, RemovesWhatDeadProcessesLeftBehind) {
  const auto stale = temporary.path() / "mrm-q-0123ABCD";
  std::filesystem::create_directory(stale);
  std::filesystem::permissions(stale, std::filesystem::perms::owner_all);
  std::ofstream(stale / "key") << "secret";
  bindStaleSocket(stale.string() + ".sock");
  script("answer format");
  ASSERT_TRUE(prepare());
  EXPECT_FALSE(std::filesystem::exists(stale));
  EXPECT_FALSE(std::filesystem::exists(stale.string() + ".sock"));
}

TEST_F(ServerBench, CannotDoWithoutAPlace) {
  script("answer format");
  const auto deep = temporary.path() / std::string(90, 'd');
  std::filesystem::create_directory(deep);
  std::filesystem::permissions(deep, std::filesystem::perms::owner_all);
  settings.temporaryDirectory = deep;
  EXPECT_FALSE(prepare());
  EXPECT_EQ(diagnostic(), "private socket path is too long");
  releasePool();
  std::filesystem::remove(deep);
  std::filesystem::permissions(temporary.path(), std::filesystem::perms(0755));
  for (const auto& place : {deep, temporary.path()}) {
    settings.temporaryDirectory = place;
    EXPECT_FALSE(prepare());
    EXPECT_EQ(diagnostic(), "private temporary directory unavailable");
    releasePool();
  }
}

TEST_F(ServerBench, EndsAServerThatStillStarts) {
  script("start stall");
  settings.limits.readiness = 24h;
  pool().activate(model);
  ASSERT_TRUE(executor.waitUntil([&] { return !noted("key").empty(); }));
  releasePool();  // hangs unless the wait is interrupted
  EXPECT_FALSE(hasChildren());
}

TEST_F(ServerBench, NothingSurvivesTheSuddenDeathOfTheApplication) {
  script("answer format");
  test::ChildProgram host({MURMEL_SERVER_HOST, temporary.path(), MURMEL_STUB_SERVER, files.model});
  const auto server = static_cast<pid_t>(std::stoi(host.line()));
  ASSERT_GT(server, 0);
  EXPECT_FALSE(hasEnded(server));
  EXPECT_EQ(leftBehind().size(), 2U);
  host.end(SIGKILL);
  EXPECT_TRUE(executor.waitUntil([&] { return hasEnded(server); }));
  ASSERT_TRUE(prepare());
  EXPECT_EQ(leftBehind().size(), 2U) << "the dead one's socket and folder are still there";
}
