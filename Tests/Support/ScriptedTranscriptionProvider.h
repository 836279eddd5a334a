#pragma once

#include "Foundation/Async/Timers.h"
#include "Recognition/TranscriptionProvider.h"
#include "Support/Testing.h"

namespace murmel {

/// A recogniser whose answers the test writes. Answers take virtual time; a second request before the answer
/// to the first fails the test.
class ScriptedTranscriptionProvider final : public TranscriptionProvider {
 public:
  struct Answer {
    Result<std::string> text;
    Duration after{};
  };
  struct Request {
    CapturedAudio audio;
    std::optional<std::string> language;
  };
  using Script = std::function<Answer(const Request& request, std::size_t index)>;

  ScriptedTranscriptionProvider(Executor& executor, Script script)
      : executor_(executor), script_(std::move(script)) {}

  [[nodiscard]] const std::string& providerID() const override { return providerID_; }

  /// Whether the engine does not come up.
  std::function<bool()> down;

  Task<Result<void>> prepare() override {
    if (down && down()) co_return std::unexpected(MRMError::workerFailed("worker did not become ready"));
    co_return Result<void>();
  }

  Task<Result<TranscriptionResult>> transcribe(CapturedAudio audio,
                                               std::optional<std::string> language) override {
    EXPECT_FALSE(busy_) << "two requests at a time";
    const Busy busy(busy_);
    requests.push_back({std::move(audio), std::move(language)});
    Answer answer = script_(requests.back(), requests.size() - 1);
    auto wait = sleepFor(executor_, answer.after);
    co_await wait;
    if (!answer.text) co_return std::unexpected(answer.text.error());
    TranscriptionResult result;
    result.text = SpokenText(*answer.text);
    result.providerID = providerID_;
    co_return result;
  }

  std::vector<Request> requests;

 private:
  /// Given back when the request ends or is cancelled.
  class Busy {
   public:
    explicit Busy(bool& flag) : flag_(flag) { flag_ = true; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() { flag_ = false; }

   private:
    bool& flag_;
  };

  Executor& executor_;
  Script script_;
  std::string providerID_ = "scripted";
  bool busy_ = false;
};

}  // namespace murmel
