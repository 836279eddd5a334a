#pragma once

#include "Foundation/Async/Clock.h"
#include "LocalModels/QwenLocalRefinementProvider.h"
#include "LocalModels/QwenServerPool.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/Awaiting.h"
#include "Support/OneModel.h"
#include "Support/ProcessTraces.h"
#include "Support/Refining.h"
#include "Support/RoomyLauncher.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace murmel {

/// Servers that are started through the real launcher. When a test is over, no child, no descriptor and no
/// file of theirs may be left.
class ServerBench : public ::testing::Test {
 protected:
  using Answer = Result<std::string>;

  static constexpr auto model = SmartLocalModel::qwen06;

  ServerBench() {
    // Nothing in these tests waits for as long, unless it is about to fail.
    settings.limits.readiness = std::chrono::seconds(30);
    settings.limits.readinessInterval = std::chrono::milliseconds(5);
    settings.limits.asking.request = std::chrono::seconds(30);
    settings.limits.asking.firstPause = std::chrono::seconds(0);
  }

  void script(const std::string& lines) const { std::ofstream(files.model) << lines; }

  /// What the servers of this test have noted.
  [[nodiscard]] std::vector<std::string> notes() const {
    std::ifstream log(files.model.string() + ".log");
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) lines.push_back(line);
    return lines;
  }
  [[nodiscard]] std::size_t count(std::string_view note) const {
    const auto all = notes();
    return static_cast<std::size_t>(std::ranges::count(all, note));
  }
  /// What stands behind `name` in the last such note.
  [[nodiscard]] std::string noted(const std::string& name) const {
    std::string value;
    for (const auto& line : notes()) {
      if (line.starts_with(name + " ")) value = line.substr(name.size() + 1);
    }
    return value;
  }

  QwenServerPool& pool() {
    if (!pool_) {
      const QwenPersistentServer::Services services{executor, clock, launcher};
      pool_ = std::make_unique<QwenServerPool>(services, files, settings);
    }
    return *pool_;
  }
  void releasePool() { pool_.reset(); }

  bool prepare() {
    const auto server = pool().server(model);
    server->startIfNeeded();
    executor.waitUntil([&] { return server->preparation() != ModelSupervisor::Preparation::preparing; });
    return server->preparation() == ModelSupervisor::Preparation::ready;
  }
  [[nodiscard]] std::string diagnostic() { return pool().server(model)->diagnostic(); }

  std::unique_ptr<QwenLocalRefinementProvider> provider(bool prewarmed = false) {
    return std::make_unique<QwenLocalRefinementProvider>(pool().server(model), prewarmed);
  }

  /// The formatted text; "RAW" when the recognised one would be delivered.
  std::string refine(const std::string& text) {
    const auto refiner = provider();
    Awaiting<Answer> asking(refining(*refiner, text));
    return described(asking);
  }
  std::string described(Awaiting<Answer>& asking) { return murmel::described(executor, asking); }
  /// The only running child of this process.
  static pid_t onlyChild() {
    pid_t found = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
      std::ifstream list(entry.path() / "children");
      for (pid_t child = 0; list >> child;) found = child;
    }
    return found;
  }

  /// Everything in the temporary directory, by name.
  [[nodiscard]] std::set<std::string> leftBehind() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(temporary.path()))
      names.insert(entry.path().filename());
    return names;
  }

  void TearDown() override {
    pool_.reset();
    EXPECT_FALSE(hasChildren()) << "a server is left behind";
    EXPECT_EQ(openDescriptorCount(), descriptorsBefore_) << "descriptors have leaked";
    EXPECT_EQ(leftBehind(), std::set<std::string>()) << "sockets or keys are left behind";
  }

  TemporaryFolder temporary, store;
  ManualExecutor executor;
  SystemClock clock;
  RoomyLauncher launcher{store.path()};
  OneModel files{store.path() / "model.gguf"};
  QwenServerPool::Settings settings{
      .applicationIdentifier = "test",
      .temporaryDirectory = temporary.path(),
      .runtime = {MURMEL_STUB_SERVER, [](const std::filesystem::path&) { return true; }},
      .limits = {},
      .failed = [this](SmartLocalModel, const std::string& reason) { failures.push_back(reason); },
  };
  std::vector<std::string> failures;

 private:
  std::size_t descriptorsBefore_ = openDescriptorCount();
  std::unique_ptr<QwenServerPool> pool_;
};

}  // namespace murmel
