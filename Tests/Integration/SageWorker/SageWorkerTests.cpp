#include "Foundation/Json/Json.h"
#include "LocalModels/LocalModelRefiners.h"
#include "Platform/Fake/FakeLanguageRecognizer.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/BuildPaths.h"
#include "Support/MemoryLogSink.h"
#include "Support/Refining.h"
#include "Support/TemporaryFolder.h"
#include "Support/WorkerDriver.h"

namespace {

const std::filesystem::path resources = resourcesFolder();
const auto worker = resources / "Workers" / SageNativeAssets::workerName;
const std::filesystem::path models = MURMEL_SAGE_MODELS;
const std::filesystem::path runtime = MURMEL_ONNX_RUNTIME_LIBRARY;

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int time = 0; time < count; ++time) result += text;
  return result;
}

class SageWorker : public WorkerDriver, public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::filesystem::exists(runtime)) return;
    if (std::getenv("MURMEL_RUNTIME_REQUIRED") != nullptr) FAIL() << "there is no " << runtime;
    GTEST_SKIP() << "the ONNX Runtime library could not be fetched";
  }

  void start(const std::filesystem::path& model, const std::filesystem::path& library = runtime) {
    launch({worker,
            {"--model-dir", model.string(), "--runtime", library.string()},
            {},
            {.readable = {model, library}}});
  }
  /// The corrected text; the reason in angle brackets when it is refused.
  std::string ask(std::int64_t id, const std::string& text, int limit = 10'000) {
    write(jsonText(Json{{"id", id}, {"text", text}, {"limit_ms", limit}}));
    const auto reply = read();
    if (!reply) return "<" + reply.error().detail() + ">";
    EXPECT_EQ(reply->id, id);
    return reply->text ? reply->text->reveal() : "<" + reply->errorType.value_or("") + ">";
  }
};

}  // namespace

TEST_F(SageWorker, CorrectsWithItsModel) {
  start(models / "good");
  ASSERT_EQ(read()->event, "ready");
  EXPECT_EQ(ask(1, "привет мир"), "Привет, мир!");
  EXPECT_EQ(ask(2, "  привет мир как дела\n"), "Привет, мир! Как дела?");
  EXPECT_EQ(ask(3, "нет"), "Совсем") << "a model may say what it likes";
  EXPECT_EQ(ask(4, "приветы, it's 42 — déjà vu 👍🏽"),
            "Привет,ы, it's 42 — déjà vu 👍🏽")
      << "byte for byte";
  EXPECT_EQ(ask(5, " \n"), "");
  EXPECT_TRUE(ask(6, "привет" + repeated(" мир", 511)).ends_with(" мир! мир!"));
  EXPECT_EQ(ask(7, "привет" + repeated(" мир", 512)), "<text is too long>");
  EXPECT_EQ(ask(8, repeated("мир ", 100), 1), "<no answer in time>");
  EXPECT_EQ(ask(9, "привет"), "Привет,") << "and goes on";
  process->closeInput();
  EXPECT_FALSE(read().has_value()) << "it ends with its input";
}

TEST_F(SageWorker, RefusesMalformedRequestsAndGoesOn) {
  start(models / "good");
  ASSERT_EQ(read()->event, "ready");
  struct Row {
    std::string request;
    const char* error;
    std::optional<std::int64_t> id;
  };
  for (const auto& row : std::vector<Row>{
           {"", "malformed request", {}},
           {"[1]", "malformed request", {}},
           {R"({"text":"a"})", "request without id", {}},
           {R"({"id":1.5,"text":"a"})", "request without id", {}},
           {R"({"id":1})", "request without text", 1},
           {R"({"id":2,"text":["a"]})", "request without text", 2},
           {R"({"id":3,"text":"a","limit_ms":0})", "malformed limit", 3},
           {R"({"id":4,"text":"a","limit_ms":60001})", "malformed limit", 4},
           {R"({"id":5,"text":"a","limit_ms":"1"})", "malformed limit", 5},
           {std::string(70'000, 'x'), "request is too long", {}},
       }) {
    SCOPED_TRACE(row.request.substr(0, 60));
    write(row.request);
    const auto reply = read();
    ASSERT_TRUE(reply.has_value());
    EXPECT_EQ(reply->event, "error");
    EXPECT_EQ(reply->errorType, row.error);
    EXPECT_EQ(reply->id, row.id);
  }
  EXPECT_EQ(ask(9, "привет"), "Привет,");
}

TEST_F(SageWorker, SaysWhyItCannotBegin) {
  const TemporaryFolder empty;
  struct Row {
    std::filesystem::path model, library;
    const char* reason;
  };
  for (const auto& row : std::vector<Row>{
           {empty.path(), runtime, "model file is missing"},
           {empty.path() / "missing", runtime, "model directory is not accessible"},
           {models / "good", empty.path() / "missing.so", "inference runtime could not be loaded"},
           {models / "good", worker, "inference runtime could not be loaded"},
           {"good", runtime, "path is not absolute"},
           {models / "another-kind", runtime, "model is of another kind"},
           {models / "no-end", runtime, "model vocabulary is not understood"},
           {models / "bad-merges", runtime, "model merges are not understood"},
           {models / "no-decoder", runtime, "model file is missing"},
           {models / "truncated", runtime, "model could not be loaded"},
       }) {
    start(row.model, row.library);
    const auto message = read();
    ASSERT_TRUE(message.has_value()) << row.reason;
    EXPECT_EQ(message->event, "error");
    EXPECT_EQ(message->errorType, row.reason);
    EXPECT_FALSE(read().has_value()) << "it has ended";
  }
  start(models / "other-numbers");
  ASSERT_EQ(read()->event, "ready");
  EXPECT_EQ(ask(1, "привет"), "<model failed>");
}

namespace {

class OnlyRussian final : public SmartModelFiles {
 public:
  [[nodiscard]] std::optional<std::filesystem::path> modelFile(SmartLocalModel) const override { return {}; }
  [[nodiscard]] std::optional<std::filesystem::path> russianModelDirectory() const override {
    return directory;
  }
  std::optional<std::filesystem::path> directory;
};

}  // namespace

TEST_F(SageWorker, RefinesThroughTheApplicationsRefiners) {
  ManualExecutor executor;
  OnlyRussian files;
  const TemporaryFolder temporary;
  RefinerLocations locations{.resourcesDirectory = resources,
                             .temporaryDirectory = temporary.path(),
                             .edition = DistributionEdition::development,
                             .languageModelServer = std::nullopt,
                             .onnxRuntime = runtime.string()};
  const ExecutableRuntimePolicy policy(resources, std::nullopt, nullptr);
  test::MemoryLogSink log;
  const FakeLanguageRecognizer recognizer;
  const auto choice = [] { return RefinementChoice{.smartFormatting = true, .otherLanguages = false}; };
  LocalModelRefiners refiners({executor, clock, launcher, log, files, recognizer}, "test", locations, policy,
                              choice);
  Awaiting<bool> early(refiners.prepared());
  ASSERT_TRUE(executor.waitUntil([&] { return early.done(); }));
  EXPECT_FALSE(*early) << "the model is not installed";
  files.directory = models / "good";
  Awaiting<bool> preparing(refiners.prepared());
  ASSERT_TRUE(executor.waitUntil([&] { return preparing.done(); }));
  EXPECT_TRUE(*preparing);
  const auto refiner = refiners.makeRefinementProvider();
  Awaiting<Result<std::string>> asking(refining(*refiner, "привет мир нет " + repeated("как дела ", 30)));
  ASSERT_TRUE(executor.waitUntil([&] { return asking.done(); }));
  ASSERT_TRUE(asking->has_value());
  const auto& refined = **asking;
  EXPECT_TRUE(refined.starts_with("Привет, мир! нет Как дела? Как дела?")) << refined;
  refiners.shutdown();

  locations.edition = DistributionEdition::complete;
  LocalModelRefiners shipped({executor, clock, launcher, log, files, recognizer}, "test", locations, policy,
                             choice);
  Awaiting<bool> own(shipped.prepared());
  ASSERT_TRUE(executor.waitUntil([&] { return own.done(); }));
  EXPECT_EQ(*own, std::filesystem::exists(resources / SageNativeAssets::runtimePath))
      << "a shipped build takes its own runtime only";
}
