// The speech worker's own protocol loop with an engine that takes no time: what is left is the road there and
// back.

#include "Workers/SpeechWorker/RequestLoop.h"

#include <unistd.h>

namespace {

class NoEngine final : public murmel::worker::SpeechEngine {
 public:
  std::expected<std::string, std::string> recognise(std::span<const std::int16_t> samples,
                                                    const murmel::worker::SpeechHints&) override {
    return std::to_string(samples.size());
  }
  void forget() override {}
};

}  // namespace

int main() {
  murmel::worker::ReplyWriter replies(STDOUT_FILENO);
  murmel::worker::LineReader requests(STDIN_FILENO, murmel::worker::longestRequest);
  NoEngine engine;
  if (replies.ready()) murmel::worker::serveRequests(requests, replies, engine);
}
