// The lines between the application and its workers, both ways: the first byte says whose.

#include "Foundation/Text/LineSplitter.h"
#include "Models/DownloaderLines.h"
#include "Require.h"
#include "WorkerProcess/WorkerMessage.h"
#include "Workers/ModelDownloader/Command.h"
#include "Workers/SageWorker/CorrectionRequest.h"
#include "Workers/SpeechWorker/TranscriptionRequest.h"

#include <array>

using namespace murmel;

namespace {

void transcription(std::string_view line) {
  const auto request = worker::TranscriptionRequest::decode(line);
  if (!request) require(!request.error().reason.empty(), "a refusal has a reason");
}
void correction(std::string_view line) {
  const auto request = worker::CorrectionRequest::decode(line);
  if (request)
    require(request->limit >= Duration{} && request->limit <= worker::CorrectionRequest::longestLimit,
            "a request ends in time");
}
void reply(std::string_view line) {
  const auto message = WorkerMessage::decode(line);
  if (message && message->text)
    require(message->text->reveal().size() <= line.size(), "a text is in its line");
}
void downloaderCommand(std::string_view line) {
  (void)downloader::parseCommand(line);
}
void downloaderEvent(std::string_view line) {
  const auto event = DownloaderEvent::decode(line);
  if (event) require(event->received >= 0, "nothing less than nothing has arrived");
}

constexpr std::array readers{transcription, correction, reply, downloaderCommand, downloaderEvent};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const auto read = readers.at(data[0] % readers.size());
  const std::size_t piece = 1 + data[1];
  std::string_view rest(reinterpret_cast<const char*>(data) + 2, size - 2);
  constexpr std::size_t longestLine = 4'096;
  LineSplitter lines(longestLine);
  std::size_t given = 0;
  for (; !rest.empty(); rest.remove_prefix(std::min(piece, rest.size()))) {
    lines.append(rest.substr(0, piece));
    require(lines.held() <= longestLine + piece + 1, "memory is bounded");
    while (const auto line = lines.next()) {
      given += line->text.size();
      require(!line->text.contains('\n') && line->text.size() <= longestLine, "a line is one");
      read(line->text);
    }
    lines.forgetUsed();
  }
  require(given <= size, "nothing is made up");
  return 0;
}
