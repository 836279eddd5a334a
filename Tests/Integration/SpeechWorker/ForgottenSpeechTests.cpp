#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"
#include "Models/SpeechModels.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Support/BuildPaths.h"
#include "Support/FileBytes.h"
#include "Support/ProcessMemory.h"
#include "Support/Testing.h"

namespace {

/// Some seconds of somebody reading.
const std::string spokenRecording = "/usr/share/pocketsphinx/test/data/cards/005.wav";

/// A worker whose replies are read only when the test wants them.
class SlowlyHeardWorker {
 public:
  explicit SlowlyHeardWorker(const std::filesystem::path& model) {
    LinuxProcessLauncher launcher;
    auto launched = launcher.launch({resourcesFolder() + "/Workers/mrm-fluidaudio-worker",
                                     {"--model-dir", model, "--precision", "int8"},
                                     {},
                                     {.readable = {model}}});
    if (launched) process_ = *std::move(launched);
  }
  [[nodiscard]] pid_t identifier() const { return process_->identifier(); }

  /// The next line that says something.
  std::string read() {
    for (std::string line;;) {
      char letter = 0;
      if (::read(process_->output(), &letter, 1) != 1) return "(ended)";
      if (letter != '\n') line += letter;
      if (letter == '\n' && !line.empty()) return line;
    }
  }
  void ask(const std::string& line) const {
    for (std::size_t done = 0; done < line.size();) {
      const auto count = ::write(process_->input(), line.data() + done, line.size() - done);
      ASSERT_GT(count, 0);
      done += static_cast<std::size_t>(count);
    }
  }
  /// Leaves no room for a reply: the worker has to stand there with what it wants to say.
  void fillOutput() const {
    const UniqueDescriptor end(::open(("/proc/self/fd/" + std::to_string(process_->output())).c_str(),
                                      O_WRONLY | O_CLOEXEC | O_NONBLOCK));
    while (::write(end.get(), "\n", 1) == 1) {
    }
  }

 private:
  std::unique_ptr<ChildProcess> process_;
};

bool comesTrue(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return true;
}

class ForgottenSpeech : public ::testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(ForgottenSpeech, IsNowhereInTheWorkerOnceItHasAnswered) {
#if defined(MURMEL_SANITIZED)
  GTEST_SKIP() << "instrumented programs have a heap of their own";
#endif
  if (!std::filesystem::exists(GetParam())) GTEST_SKIP() << "the model has not been fetched";
  SlowlyHeardWorker worker(GetParam());
  ASSERT_NE(worker.read().find("ready"), std::string::npos);
  const ProcessMemory memory(worker.identifier());
  if (!memory.isReadable()) GTEST_SKIP() << "this user may not look into processes";

  constexpr std::size_t header = 44;
  constexpr std::size_t rate = 16'000;
  const auto file = contentsOf(spokenRecording);
  std::vector<std::int16_t> samples((file.size() - header) / 2);
  std::memcpy(samples.data(), file.data() + header, 2 * samples.size());
  const auto bytes = std::as_bytes(std::span(samples));
  const auto request = R"({"id":1,"sample_rate":16000,"language":"en","pcm_s16le_base64":")" +
                       base64::encoded({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}) +
                       "\"}\n";
  worker.ask(request);
  const auto text = parsedJson(worker.read())["text"].text().value_or("");
  ASSERT_GT(text.size(), 20U);
  const auto words = test::piecesOfText(text);
  const auto sound = test::piecesOfSound(std::span(samples).subspan(rate, rate));

  worker.fillOutput();
  worker.ask(request);
  EXPECT_TRUE(comesTrue([&] { return memory.count(words) > 0; })) << "the search finds what is there";
  EXPECT_GT(memory.count(sound), 0) << "the search finds what is there";
  EXPECT_NE(worker.read().find(text), std::string::npos);
  std::string where;
  EXPECT_TRUE(comesTrue([&] { return memory.count(words) + memory.count(sound) == 0; }))
      << memory.count(words, &where) << " of " << words.size() << " words, " << memory.count(sound, &where)
      << " of " << sound.size() << " sounds\n"
      << where;
}

INSTANTIATE_TEST_SUITE_P(Engines, ForgottenSpeech,
                         ::testing::Values(std::string(packagedSpeechModelFolder),
                                           buildFolder() + "/tests/models/whisper-base"),
                         [](const auto& row) { return row.index == 0 ? "PocketSphinx" : "Whisper"; });
