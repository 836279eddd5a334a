#include "Foundation/WriteAll.h"
#include "Support/Pipe.h"
#include "Support/Testing.h"
#include "Workers/Common/LineReader.h"
#include "Workers/SpeechWorker/RequestLoop.h"

#include <new>

using namespace murmel::worker;

namespace {

using Outcome = LineReader::Outcome;

void write(const Pipe& pipe, std::string_view text) {
  ASSERT_TRUE(writeAll(pipe.writeEnd.get(), text));
}

std::string readAll(const Pipe& pipe) {
  std::string all;
  std::array<char, 4'096> chunk{};
  for (ssize_t count = 0; (count = ::read(pipe.readEnd.get(), chunk.data(), chunk.size())) > 0;)
    all.append(chunk.data(), static_cast<std::size_t>(count));
  return all;
}

/// Repeats the number of samples; fails for one, runs out of memory for two.
class CountingEngine final : public SpeechEngine {
 public:
  std::expected<std::string, std::string> recognise(std::span<const std::int16_t> samples,
                                                    const SpeechHints& hints) override {
    if (samples.size() == 1) return std::unexpected("one");
    if (samples.size() == 2) throw std::bad_alloc();
    return std::to_string(samples.size()) + hints.language.value_or("") + "\n\xff";
  }
  void forget() override {}
};

}  // namespace

TEST(LineReader, CutsLinesOutOfWhateverArrives) {
  Pipe pipe;
  LineReader reader(pipe.readEnd.get(), 100);
  write(pipe, "one\n\ntwo\nthr");
  ASSERT_EQ(reader.next(), Outcome::line);
  EXPECT_EQ(reader.line(), "one");
  ASSERT_EQ(reader.next(), Outcome::line);
  EXPECT_EQ(reader.line(), "");
  ASSERT_EQ(reader.next(), Outcome::line);
  EXPECT_EQ(reader.line(), "two");
  reader.release();
  write(pipe, "ee\nincomplete");
  ASSERT_EQ(reader.next(), Outcome::line);
  EXPECT_EQ(reader.line(), "three");
  pipe.writeEnd.reset();
  EXPECT_EQ(reader.next(), Outcome::end);
}

TEST(LineReader, DropsALineThatIsTooLongAndNothingElse) {
  Pipe pipe;
  LineReader reader(pipe.readEnd.get(), 1'000);
  std::jthread writer([&] {
    write(pipe, std::string(1'000, 'a') + "\n");
    write(pipe, std::string(1'001, 'b') + "\n");
    write(pipe, std::string(3'000'000, 'c') + "\nd\n");
  });
  ASSERT_EQ(reader.next(), Outcome::line);
  EXPECT_EQ(reader.line(), std::string(1'000, 'a'));
  EXPECT_EQ(reader.next(), Outcome::tooLong);
  EXPECT_EQ(reader.next(), Outcome::tooLong);
  ASSERT_EQ(reader.next(), Outcome::line);
  EXPECT_EQ(reader.line(), "d");
}

TEST(RequestLoop, AnswersEveryLineOnceWhateverTheEngineDoes) {
  Pipe requests, replies;
  write(requests,
        "{\"id\":1,\"sample_rate\":16000,\"pcm_s16le_base64\":\"AAAAAAAA\",\"language\":\"ru\"}\n"
        "{\"id\":2,\"sample_rate\":16000,\"pcm_s16le_base64\":\"AAA=\"}\n"
        "{\"id\":3,\"sample_rate\":16000,\"pcm_s16le_base64\":\"AAAAAA==\"}\n"
        "nonsense\n"
        "{\"id\":5,\"sample_rate\":16000,\"pcm_s16le_base64\":\"\"}\n");
  requests.writeEnd.reset();
  LineReader reader(requests.readEnd.get(), 1'000);
  ReplyWriter writer(replies.writeEnd.get());
  CountingEngine engine;
  serveRequests(reader, writer, engine);
  replies.writeEnd.reset();
  EXPECT_EQ(readAll(replies),
            "{\"event\":\"result\",\"id\":1,\"mrm_worker_protocol\":1,\"text\":\"3ru\\n\uFFFD\"}\n"
            "{\"error_type\":\"one\",\"event\":\"error\",\"id\":2,\"mrm_worker_protocol\":1}\n"
            "{\"error_type\":\"not enough memory\",\"event\":\"error\",\"id\":3,\"mrm_worker_protocol\":1}\n"
            "{\"error_type\":\"malformed request\",\"event\":\"error\",\"mrm_worker_protocol\":1}\n"
            "{\"event\":\"result\",\"id\":5,\"mrm_worker_protocol\":1,\"text\":\"0\\n\uFFFD\"}\n");
}
