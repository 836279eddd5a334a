#include "Platform/Fake/ManualExecutor.h"
#include "Support/Testing.h"
#include "Workers/SageWorker/EncoderDecoder.h"

using namespace murmel::worker;

namespace {

using Tokens = std::vector<std::int64_t>;

Tokens tokensOf(const OnnxInput& input) {
  const auto data = std::get<std::span<const std::int64_t>>(input.data);
  return {data.begin(), data.end()};
}

OnnxOutput output(std::vector<float> numbers, std::vector<std::int64_t> shape) {
  const auto kept = std::make_shared<const std::vector<float>>(std::move(numbers));
  return {kept, *kept, std::move(shape)};
}

class FakeSession final : public OnnxSession {
 public:
  using Function = std::function<std::expected<OnnxOutput, std::string>(std::span<const OnnxInput>)>;
  FakeSession(Strings inputs, Strings outputs, Function function)
      : inputs_(std::move(inputs)), outputs_(std::move(outputs)), function_(std::move(function)) {}

  [[nodiscard]] const Strings& inputNames() const override { return inputs_; }
  [[nodiscard]] const Strings& outputNames() const override { return outputs_; }
  std::expected<OnnxOutput, std::string> run(std::span<const OnnxInput> inputs, const char*) override {
    return function_(inputs);
  }

 private:
  Strings inputs_, outputs_;
  Function function_;
};

std::unique_ptr<OnnxSession> encoder(std::vector<std::int64_t> shape = {1, 2, 1}) {
  return std::make_unique<FakeSession>(
      Strings{"attention_mask", "input_ids"}, Strings{"last_hidden_state"},
      [shape](std::span<const OnnxInput> inputs) -> std::expected<OnnxOutput, std::string> {
        EXPECT_EQ(tokensOf(inputs[0]), (Tokens{5, 6}));
        EXPECT_EQ(tokensOf(inputs[1]), (Tokens{1, 1}));
        return output({0.5F, 0.25F}, shape);
      });
}

/// Writes what `next` says, as the highest of `width` scores.
std::unique_ptr<OnnxSession> decoder(std::function<std::int64_t(const Tokens&)> next,
                                     std::int64_t width = 8) {
  return std::make_unique<FakeSession>(
      Strings{"encoder_hidden_states", "encoder_attention_mask", "input_ids"}, Strings{"more", "logits"},
      [next, width](std::span<const OnnxInput> inputs) -> std::expected<OnnxOutput, std::string> {
        const auto written = tokensOf(inputs[0]);
        EXPECT_EQ(std::get<std::span<const float>>(inputs[1].data)[1], 0.25F);
        EXPECT_EQ(tokensOf(inputs[2]), (Tokens{1, 1}));
        std::vector<float> scores(written.size() * static_cast<std::size_t>(width), -1);
        scores.front() = 100;  // of the first position: not what is asked for
        const auto last = (written.size() - 1) * static_cast<std::size_t>(width);
        const auto chosen = next(written);
        if (chosen >= 0) scores[last + static_cast<std::size_t>(chosen)] = 200;
        return output(std::move(scores), {1, static_cast<std::int64_t>(written.size()), width});
      });
}

constexpr std::int64_t start = 0;
constexpr std::int64_t end = 2;

std::expected<Tokens, std::string> generated(std::unique_ptr<OnnxSession> reader,
                                             std::unique_ptr<OnnxSession> writer, std::size_t most = 10) {
  const ManualExecutor clock;
  auto model = EncoderDecoder::create(std::move(reader), std::move(writer), 8).value();
  return model.generate(Tokens{5, 6}, start, end, {most, clock.now() + 1s}, clock, nullptr);
}

}  // namespace

TEST(EncoderDecoder, WritesTheMostLikelyTokenUntilTheEnd) {
  const auto countdown = [](const Tokens& written) { return written.back() == 0 ? 6 : written.back() - 1; };
  EXPECT_EQ(generated(encoder(), decoder(countdown)), (Tokens{6, 5, 4, 3}));
  EXPECT_EQ(generated(encoder(), decoder([](const Tokens&) { return end; })), Tokens{});
}

TEST(EncoderDecoder, BoundsTheAnswer) {
  const auto endless = [](const Tokens&) { return 7; };
  EXPECT_EQ(generated(encoder(), decoder(endless)).error(), "answer is too long");
  const auto four = [](const Tokens& written) { return written.size() <= 4 ? 7 : end; };
  EXPECT_EQ(generated(encoder(), decoder(four), 4), (Tokens{7, 7, 7, 7}));
  EXPECT_EQ(generated(encoder(), decoder(four), 3).error(), "answer is too long");

  ManualExecutor clock;
  auto model = EncoderDecoder::create(encoder(), decoder([&](const Tokens&) {
                                        clock.advance(400ms);
                                        return 7;
                                      }),
                                      8)
                   .value();
  EXPECT_EQ(model.generate(Tokens{5, 6}, start, end, {10, clock.now() + 1s}, clock, nullptr).error(),
            "no answer in time");
}

TEST(EncoderDecoder, TakesNoTokenThatCannotBeWritten) {
  // Places beyond the vocabulary may hold anything.
  const auto beyond = [](const Tokens& written) { return written.size() == 1 ? 9 : end; };
  const auto answer = generated(encoder(), decoder(beyond, 16));
  ASSERT_TRUE(answer.has_value());
  ASSERT_EQ(answer->size(), 1U);
  EXPECT_LT(answer->front(), 8);
}

TEST(EncoderDecoder, RefusesModelsOfAnotherKind) {
  const auto fails = [](std::span<const OnnxInput>) { return output({}, {1}); };
  const auto session = [&](Strings inputs, Strings outputs) {
    return std::make_unique<FakeSession>(std::move(inputs), std::move(outputs), fails);
  };
  const auto next = [](const Tokens&) { return end; };
  const auto refused = [&](std::unique_ptr<OnnxSession> reader, std::unique_ptr<OnnxSession> writer) {
    return !EncoderDecoder::create(std::move(reader), std::move(writer), 8).has_value();
  };
  EXPECT_TRUE(refused(session({"input_ids"}, {"last_hidden_state"}), decoder(next)));
  EXPECT_TRUE(refused(session({"input_ids", "attention_mask"}, {"pooled"}), decoder(next)));
  EXPECT_TRUE(refused(encoder(), session({"input_ids", "encoder_hidden_states", "encoder_attention_mask",
                                          "past_key_values.0.key"},
                                         {"logits"})));
  EXPECT_TRUE(refused(encoder(),
                      session({"input_ids", "encoder_hidden_states", "encoder_attention_mask"}, {"scores"})));
  EXPECT_FALSE(refused(encoder(), decoder(next)));

  EXPECT_EQ(generated(encoder({1, 3, 1}), decoder(next)).error(), "model failed") << "of another length";
  auto odd = session({"input_ids", "encoder_hidden_states", "encoder_attention_mask"}, {"logits"});
  EXPECT_EQ(generated(encoder(), std::move(odd)).error(), "model failed");
}

TEST(EncoderDecoder, WritesTheSameWhateverIsGuessed) {
  constexpr std::int64_t width = 8;
  for (unsigned seed = 0; seed < 120; ++seed) {
    // A decoder that depends on every token it has read; where two scores are close, it turns them round when
    // more tokens follow, as rounding may.
    const auto scoresOf = [seed](std::span<const std::int64_t> read, bool isLast) {
      std::mt19937 numbers(seed);
      for (const auto token : read) numbers.seed(numbers() + static_cast<unsigned>(token) + 1);
      std::vector<float> row(width);
      for (auto& score : row) score = static_cast<float>(numbers() % 100);
      auto order = row;
      std::ranges::sort(order, std::greater());
      const auto spread = EncoderDecoder::closeScores * (order[0] - order.back());
      if (!isLast && order[0] - order[1] < spread)
        std::swap(*std::ranges::find(row, order[0]), *std::ranges::find(row, order[1]));
      return row;
    };
    int passes = 0;
    const auto answer = [&](const TokenDraft& draft) {
      const auto scoring = [&](std::span<const OnnxInput> inputs) -> std::expected<OnnxOutput, std::string> {
        ++passes;
        const auto read = tokensOf(inputs[0]);
        std::vector<float> all;
        for (std::size_t count = 1; count <= read.size(); ++count) {
          const auto row = scoresOf(std::span(read).first(count), count == read.size());
          all.insert(all.end(), row.begin(), row.end());
        }
        return output(std::move(all), {1, static_cast<std::int64_t>(read.size()), width});
      };
      auto writer = std::make_unique<FakeSession>(
          Strings{"encoder_hidden_states", "encoder_attention_mask", "input_ids"}, Strings{"logits"},
          scoring);
      const ManualExecutor clock;
      auto model = EncoderDecoder::create(encoder(), std::move(writer), width).value();
      return model.generate(Tokens{5, 6}, start, end, {40, clock.now() + 1s}, clock, draft);
    };
    const auto plain = answer(nullptr);
    const auto plainPasses = std::exchange(passes, 0);
    // A guess that is right for a while, and then is not.
    const auto guessed = answer([&](std::span<const std::int64_t> written) {
      Tokens draft = plain.value_or(Tokens(40, 3));
      draft.erase(draft.begin(),
                  draft.begin() + static_cast<std::ptrdiff_t>(std::min(draft.size(), written.size())));
      if (draft.size() > seed % 7) draft[seed % 7] = seed % width;
      draft.push_back(end);
      return draft;
    });
    EXPECT_EQ(guessed, plain) << seed;
    EXPECT_LE(passes, 2 * plainPasses) << seed;
  }
}
