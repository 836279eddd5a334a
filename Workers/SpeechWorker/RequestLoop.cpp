#include "Workers/SpeechWorker/RequestLoop.h"

#include "Workers/Common/AnswerEach.h"
#include "Workers/SpeechWorker/TranscriptionRequest.h"

#include <new>

namespace murmel::worker {

namespace {

bool answer(LineReader& requests, ReplyWriter& replies, SpeechEngine& engine) {
  const auto request = TranscriptionRequest::decode(requests.line());
  // The decoded samples are enough: recognition takes a while and memory of its own.
  requests.release();
  if (!request) return replies.error(request.error().id, request.error().reason);
  try {
    const auto text = engine.recognise(request->samples, request->hints);
    return text ? replies.result(request->id, *text) : replies.error(request->id, text.error());
  } catch (const std::bad_alloc&) {
    return replies.error(request->id, "not enough memory");
  }
}

}  // namespace

void serveRequests(LineReader& requests, ReplyWriter& replies, SpeechEngine& engine) {
  answerEach(requests, replies, [&] {
    const bool isHeard = answer(requests, replies, engine);
    engine.forget();
    return isHeard;
  });
}

}  // namespace murmel::worker
