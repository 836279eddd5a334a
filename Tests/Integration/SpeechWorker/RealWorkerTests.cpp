#include "Foundation/Crypto/Base64.h"
#include "Foundation/Text/Text.h"
#include "Integration/SpeechWorker/ProviderWithWorker.h"
#include "Models/ModelManager.h"
#include "Recognition/WorkerRequest.h"
#include "Support/BuildPaths.h"
#include "Support/FileBytes.h"
#include "Support/WorkerDriver.h"

#include <poll.h>

namespace {

const std::filesystem::path resources = resourcesFolder();
const auto worker = resources / "Workers" / FluidAudioProvider::workerName;
const std::filesystem::path recordings = "/usr/share/pocketsphinx/test/data/librivox";
constexpr std::size_t waveHeaderSize = 44;

PrivateVector<std::uint8_t> samplesOf(const std::string& recording) {
  const auto file = contentsOf(recordings / (recording + ".wav"));
  return {file.begin() + waveHeaderSize, file.end()};
}

/// Of the words that were read aloud, the share that stands in `text`.
double shareHeard(const std::string& text, std::string_view spoken) {
  const auto heard = text::words(text);
  const std::multiset<std::string_view> found(heard.begin(), heard.end());
  const auto words = text::words(spoken);
  const auto count =
      std::ranges::count_if(words, [&](std::string_view word) { return found.contains(word); });
  return static_cast<double>(count) / static_cast<double>(words.size());
}

std::string statusLine(pid_t process, const char* file, std::string_view name) {
  std::ifstream lines("/proc/" + std::to_string(process) + "/" + file);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(name)) return line.substr(name.size());
  }
  return {};
}

/// One engine of the worker: the folder of its model, a request's audio, and what it makes of it.
struct Engine {
  const char* name;
  std::string model, recording;
  std::string_view words;
  double leastShare;
};

const Engine pocketSphinx{"PocketSphinx", std::string(packagedSpeechModelFolder),
                          "sense_and_sensibility_01_austen_64kb-0880", "he was not an ill disposed young man",
                          0.5};

std::vector<Engine> engines() {
  std::vector<Engine> all{pocketSphinx};
#if defined(MURMEL_TINY_PARAKEET)
  // Its model is a toy that hears one word in everything.
  all.push_back({"Parakeet", MURMEL_TINY_PARAKEET, pocketSphinx.recording, "murmel murmel murmel", 1.0});
#endif
  return all;
}

class SpeechWorkerDriver : public WorkerDriver {
 protected:
  void startWorker(std::vector<std::string> arguments) {
    ProcessSandbox sandbox;
    if (arguments.size() > 1) sandbox.readable = {arguments[1]};
    launch({worker, std::move(arguments), {}, sandbox});
  }

  ManualExecutor executor;
};

class RealSpeechWorker : public SpeechWorkerDriver, public ::testing::TestWithParam<Engine> {
 protected:
  void startWorker() {
    SpeechWorkerDriver::startWorker({"--model-dir", GetParam().model, "--precision", "int8"});
  }
};

class SpeechWorkerAlone : public SpeechWorkerDriver, public ::testing::Test {};

}  // namespace

TEST_F(SpeechWorkerAlone, TurnsSpeechIntoWordsThroughTheApplicationsProvider) {
  ModelManager models(executor);
  std::optional<bool> ready;
  auto provider = FluidAudioProvider::create({executor, clock, launcher}, {resources, "test"}, models,
                                             ExecutableRuntimePolicy(resources, std::nullopt, nullptr),
                                             [&](bool value) { ready = value; });
  ASSERT_TRUE(provider.has_value()) << provider.error().localizedDescription();
  CapturedAudio audio{samplesOf("sense_and_sensibility_01_austen_64kb-0930")};
  Awaiting<Result<TranscriptionResult>> request((*provider)->transcribe(std::move(audio), std::nullopt));
  ASSERT_TRUE(executor.waitUntil([&] { return request.done(); }));
  EXPECT_EQ(ready, true);
  ASSERT_TRUE(request->has_value()) << request->error().localizedDescription();
  EXPECT_GE(shareHeard((*request)->text.reveal(), "he might even have been made amiable himself"), 0.7);
}

TEST_P(RealSpeechWorker, RefusesMalformedRequestsAndGoesOn) {
  startWorker();
  ASSERT_EQ(read()->event, "ready");
  struct Row {
    std::string request;
    const char* error;
    std::optional<std::int64_t> id;
  };
  const std::vector<Row> rows{
      {"", "malformed request", {}},
      {"hello", "malformed request", {}},
      {"[1]", "malformed request", {}},
      {R"({"id":1,"sample_rate":16000,"pcm_s16le_base64":"AAAA)", "malformed request", {}},
      {R"({"sample_rate":16000,"pcm_s16le_base64":"AAAA"})", "request without id", {}},
      {R"({"id":"1","sample_rate":16000,"pcm_s16le_base64":"AAAA"})", "request without id", {}},
      {R"({"id":2,"sample_rate":44100,"pcm_s16le_base64":"AAA="})", "unsupported sample rate", 2},
      {R"({"id":3,"sample_rate":16000})", "request without audio", 3},
      {R"({"id":4,"sample_rate":16000,"pcm_s16le_base64":7})", "request without audio", 4},
      {R"({"id":5,"sample_rate":16000,"pcm_s16le_base64":"A"})", "audio is not valid base64", 5},
      {R"({"id":6,"sample_rate":16000,"pcm_s16le_base64":"AA-_"})", "audio is not valid base64", 6},
      {R"({"id":7,"sample_rate":16000,"pcm_s16le_base64":"AAAA"})", "audio has an odd number of bytes", 7},
      {R"({"id":8,"sample_rate":16000,"pcm_s16le_base64":"AAA=","language":1})", "malformed language", 8},
      {std::string(90 << 20, 'x'), "request is too long", {}},
      {std::string(100'000, '['), "malformed request", {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.request.substr(0, 80));
    write(row.request);
    const auto reply = read();
    ASSERT_TRUE(reply.has_value()) << reply.error().localizedDescription();
    EXPECT_EQ(reply->event, "error");
    EXPECT_EQ(reply->errorType, row.error);
    EXPECT_EQ(reply->id, row.id);
  }
  const CapturedAudio audio{samplesOf(GetParam().recording)};
  write(*encodeWorkerRequest(9, audio, "en"));
  const auto reply = read();
  ASSERT_TRUE(reply.has_value() && reply->text.has_value());
  EXPECT_EQ(reply->id, 9);
  EXPECT_GE(shareHeard(reply->text->reveal(), GetParam().words), GetParam().leastShare);
}

TEST_P(RealSpeechWorker, RunsWithoutAnyWayToReachOut) {
  startWorker();
  ASSERT_EQ(read()->event, "ready");
  const auto number = process->identifier();
  EXPECT_EQ(statusLine(number, "status", "Seccomp:"), "\t2");
  EXPECT_EQ(statusLine(number, "status", "NoNewPrivs:"), "\t1");
  EXPECT_TRUE(text::trimmed(statusLine(number, "limits", "Max open files")).starts_with("0 "));
  EXPECT_EQ(process->runningIdentity(), process->launchedIdentity());
}

// The first process of a namespace is spared by signals that it has not asked for.
TEST_P(RealSpeechWorker, EndsWhenItIsAskedTo) {
  startWorker();
  ASSERT_EQ(read()->event, "ready");
  ASSERT_EQ(::kill(process->identifier(), SIGTERM), 0);
  pollfd end{process->endDescriptor(), POLLIN, 0};
  EXPECT_EQ(::poll(&end, 1, 30'000), 1);
}

TEST_P(RealSpeechWorker, EndsWithItsInputAndPrintsNothingButTheProtocol) {
  const TemporaryFolder folder;
  const auto printed = folder.path() / "printed";
  const auto run = [&](const std::string& arguments) {
    return std::system(
        (worker.string() + " " + arguments + " </dev/null >" + printed.string() + " 2>&1").c_str());
  };
  const auto& model = GetParam().model;
  EXPECT_EQ(run("--model-dir " + model + " --precision int8"), 0);
  EXPECT_EQ(contentsOf(printed), "{\"event\":\"ready\",\"mrm_worker_protocol\":1}\n");
  EXPECT_NE(run("--model-dir " + model), 0);
}

TEST_F(SpeechWorkerAlone, SaysWhyItCannotBegin) {
  const TemporaryFolder empty;
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows{
      {{"--model-dir", empty.path().string(), "--precision", "int8"}, "speech model could not be loaded"},
      {{"--model-dir", empty.path() / "missing", "--precision", "int8"}, "model directory is not accessible"},
      {{"--model-dir", empty.path().string(), "--precision", "fp16"}, "unsupported precision"},
      {{"--precision", "int8"}, "no model directory"},
      {{"--model-dir"}, "argument without a value"},
      {{"--model-dir", "/", "--model-dir", "/", "--precision", "int8"}, "repeated argument"},
      {{"--verbose", "1"}, "unknown argument"},
  };
  for (const auto& [arguments, reason] : rows) {
    startWorker(arguments);
    const auto message = read();
    ASSERT_TRUE(message.has_value()) << reason;
    EXPECT_EQ(message->event, "error");
    EXPECT_EQ(message->errorType, reason);
    EXPECT_FALSE(read().has_value()) << "it has ended";
  }
}

INSTANTIATE_TEST_SUITE_P(Engines, RealSpeechWorker, ::testing::ValuesIn(engines()),
                         [](const auto& engine) { return std::string(engine.param.name); });

#if defined(MURMEL_TINY_PARAKEET)

class ParakeetWorker : public SpeechWorkerDriver, public ::testing::Test {
 protected:
  static std::string content() {
    return contentsOf(std::filesystem::path(MURMEL_TINY_PARAKEET) / "ggml-parakeet-tiny.bin");
  }
  /// What the worker says first with this model file.
  std::string beginning(const std::string& model) {
    std::ofstream(folder.path() / "ggml-parakeet-tiny.bin", std::ios::binary | std::ios::trunc) << model;
    startWorker({"--model-dir", folder.path().string(), "--precision", "int8"});
    const auto message = read();
    if (!message) return message.error().localizedDescription();
    return message->event == "error" ? message->errorType.value_or("") : message->event;
  }
  TemporaryFolder folder;
};

TEST_F(ParakeetWorker, SaysThatAModelIsCutOrForeignWhereverItEnds) {
  const auto whole = content();
  ASSERT_EQ(beginning(whole), "ready");
  const std::string refusal = "speech model could not be loaded";
  // The weights begin after the header, the two tables, the durations and the words.
  const auto weights = whole.find("encoder.pre_encode.out.weight");
  ASSERT_NE(weights, std::string::npos);
  const auto firstTensor = weights - 5 * sizeof(std::int32_t);
  for (const auto size : {std::size_t{0}, std::size_t{3}, std::size_t{4}, std::size_t{60}, std::size_t{1'000},
                          firstTensor - 1, firstTensor + 2, weights, weights + 29, weights + 30,
                          whole.size() / 2, whole.size() - 4, whole.size() - 1}) {
    EXPECT_EQ(beginning(whole.substr(0, size)), refusal) << "cut to " << size << " of " << whole.size();
  }
  EXPECT_EQ(beginning(std::string(whole.size(), '\0')), refusal);
  EXPECT_EQ(beginning("GGUF" + whole.substr(4)), refusal);
  auto hostile = whole;
  hostile.replace(4, 4, "\xff\xff\xff\x7f", 4);  // a vocabulary of two thousand million words
  EXPECT_EQ(beginning(hostile), refusal);
}

TEST_F(ParakeetWorker, RecognisesALongRecordingInPieces) {
  startWorker({"--model-dir", MURMEL_TINY_PARAKEET, "--precision", "int8"});
  ASSERT_EQ(read()->event, "ready");
  // The toy hears its word about three times a second, whatever the pieces are.
  std::size_t id = 0;
  for (const int seconds : {1, 49, 125}) {
    PrivateVector<std::uint8_t> samples(static_cast<std::size_t>(seconds) * 32'000);
    // Noise that comes and goes, as speech does: steady noise is not given to an engine.
    std::uint32_t noise = 1;
    for (std::size_t at = 0; at < samples.size(); ++at) {
      const int quieter = at / 16'000 % 2 == 0 ? 31 : 27;
      samples[at] = static_cast<std::uint8_t>((noise = noise * 1'664'525 + 1'013'904'223) >> quieter);
    }
    write(*encodeWorkerRequest(static_cast<std::int64_t>(++id), CapturedAudio{std::move(samples)},
                               std::nullopt));
    const auto reply = read();
    ASSERT_TRUE(reply.has_value() && reply->text.has_value());
    const auto words = text::words(reply->text->reveal()).size();
    EXPECT_GE(words, static_cast<std::size_t>(3 * seconds));
    EXPECT_LE(words, static_cast<std::size_t>(4 * seconds));
  }
}

TEST_F(ParakeetWorker, SaysThatTheEngineIsMissing) {
  const auto copy = folder.path() / "Workers" / FluidAudioProvider::workerName;
  std::filesystem::create_directory(copy.parent_path());
  std::filesystem::copy(worker, copy);
  launch({copy,
          {"--model-dir", MURMEL_TINY_PARAKEET, "--precision", "int8"},
          {},
          {.readable = {MURMEL_TINY_PARAKEET}}});
  EXPECT_EQ(read()->errorType, "speech engine is missing from the app");
}

#endif
