#include "Foundation/Text/Text.h"
#include "Integration/LanguageModelServer/ServerBench.h"
#include "LocalModels/LocalUnixHTTP.h"
#include "Refinement/BoundedRefinementProvider.h"
#include "Support/BuildPaths.h"

#include <atomic>

namespace {

/// The inference server of the complete edition, where it has been built, with a model of random numbers.
class RealServer : public ServerBench {
 protected:
  void SetUp() override {
    const auto* const given = std::getenv("MURMEL_LLAMA_SERVER");
    const std::filesystem::path server =
        given != nullptr ? given
                         : resourcesFolder() / std::filesystem::path(LanguageModelRuntime::relativePath);
    if (!std::filesystem::exists(server)) {
      if (std::getenv("MURMEL_RUNTIME_REQUIRED") != nullptr) FAIL() << "there is no " << server;
      GTEST_SKIP() << "there is no llama-server; “scripts/test --runtime” builds it";
    }
    settings.runtime.executable = server;
    settings.limits = {};
    settings.limits.asking.firstPause = 0s;
    write("write-random-model.py");
  }
  void write(const std::string& script, const std::string& text = {}) const {
    const auto command = "/usr/bin/python3 " + sourceFolder() + "/Tests/Integration/LanguageModelServer/" +
                         script + " " + files.model.string() + " '" + text + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
  }
};

/// The words without what formatting may change.
std::string wordsOf(std::string_view text) {
  std::string words;
  for (const auto character : text::characters(text)) {
    if (!text::isPunctuation(character)) words += text::lowercased(character);
  }
  return words;
}

}  // namespace

TEST_F(RealServer, AnswersInItsLimits) {
  ASSERT_TRUE(prepare()) << diagnostic();
  const auto answer = refine("hello world how are you");
  EXPECT_TRUE(answer == "RAW" || wordsOf(answer) == "hello world how are you") << answer;
  EXPECT_EQ(diagnostic(), "process running on private local socket");
}

TEST_F(RealServer, FormatsForWhoHasTheKey) {
  write("write-model.py", "Hi you.");
  ASSERT_TRUE(prepare()) << diagnostic();
  EXPECT_EQ(refine("hi you"), "Hi you.");
  std::filesystem::path socket;
  for (const auto& entry : std::filesystem::directory_iterator(temporary.path()))
    if (entry.is_socket()) socket = entry.path();
  const auto status = [&](std::string_view path) {
    const SecretBytes wrong(std::vector<std::uint8_t>(64, 'x'));
    const auto answer =
        LocalUnixHTTP(clock).request({socket, wrong, "GET", path, std::nullopt, 10s, onlyChild()});
    return answer ? answer->status : 0;
  };
  EXPECT_EQ(status("/health"), 200);
  EXPECT_EQ(status("/v1/models"), 401);
  EXPECT_EQ(status("/"), 404) << "it has no page";
}

TEST_F(RealServer, LosesNoWordAtAnyMomentOfADictation) {
  ASSERT_TRUE(prepare()) << diagnostic();
  std::mt19937 numbers(1);
  // Not SIGSEGV: the first process of a namespace ends of its own faults, not of such a signal from outside.
  // One that hangs takes nine seconds to be given up.
  const auto misfortunes = std::to_array({SIGKILL, SIGTERM, SIGKILL, SIGTERM, SIGSTOP});
  for (std::size_t moment = 0; moment < 10; ++moment) {
    const auto signal = misfortunes[moment % misfortunes.size()];
    const auto delay = std::chrono::milliseconds(numbers() % 150);
    const auto victim = onlyChild();
    ASSERT_GT(victim, 0);
    // From a thread of its own, while the questions are on their way.
    std::atomic<bool> hasHappened = false;
    std::thread misfortune([&] {
      std::this_thread::sleep_for(delay);
      ::kill(victim, signal);
      hasHappened = true;
    });
    const auto refiner = provider();
    for (int piece = 0, after = 0; after < 3; ++piece, after += hasHappened ? 1 : 0) {
      const std::string text = "piece " + std::to_string(piece) + " of what somebody says at length today";
      const auto before = clock.now();
      Awaiting<Answer> asking(refining(*refiner, text));
      const auto answer = described(asking);
      EXPECT_LT(clock.now() - before, 5s) << moment;  // it gives up after three
      EXPECT_TRUE(answer == "RAW" || wordsOf(answer) == text) << answer;
    }
    misfortune.join();
    ASSERT_TRUE(executor.waitUntil([&] { return failures.size() > moment; })) << signal;
    ASSERT_TRUE(executor.waitUntil([&] { return prepare(); })) << diagnostic();
  }
  for (const auto& reason : failures) {
    EXPECT_TRUE(reason == "model process exited" || reason == "two answers in a row took too long" ||
                reason == "inference server exited while starting")
        << reason;
  }
}
