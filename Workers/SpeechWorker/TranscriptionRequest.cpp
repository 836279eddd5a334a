#include "Workers/SpeechWorker/TranscriptionRequest.h"

#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"

#include <bit>
#include <cstring>

namespace murmel::worker {

static_assert(std::endian::native == std::endian::little, "the samples arrive in this byte order");

namespace {

constexpr std::string_view audioKey = "pcm_s16le_base64";
constexpr std::int64_t acceptedSampleRate = 16'000;

/// The value of the audio key, cut out of its line: a JSON parser would look at its millions of characters
/// one by one, and copy them.
struct CutLine {
  std::string rest;        ///< the line with "" in its place
  std::string_view audio;  ///< nothing when there was nothing to cut
};

CutLine cutAudio(std::string_view line) {
  CutLine whole{std::string(line), {}};
  constexpr std::string_view blanks = " \t\r";
  const auto quotedKey = '"' + std::string(audioKey) + '"';
  const auto key = line.find(quotedKey);
  if (key == std::string_view::npos) return whole;
  const auto colon = line.find_first_not_of(blanks, key + quotedKey.size());
  if (colon == std::string_view::npos || line[colon] != ':') return whole;
  const auto quote = line.find_first_not_of(blanks, colon + 1);
  if (quote == std::string_view::npos || line[quote] != '"') return whole;
  const auto end = line.find('"', quote + 1);
  if (end == std::string_view::npos) return whole;
  const auto audio = line.substr(quote + 1, end - quote - 1);
  // An escape ("\/" is one) needs the parser.
  if (audio.find('\\') != std::string_view::npos) return whole;
  return {std::string(line.substr(0, quote + 1)).append(line.substr(end)), audio};
}

}  // namespace

std::expected<TranscriptionRequest, RequestRefusal> TranscriptionRequest::decode(std::string_view line) {
  const auto cut = cutAudio(line);
  const auto object = parsedJson(cut.rest);
  if (!object.isObject()) return std::unexpected(RequestRefusal{std::nullopt, "malformed request"});
  const auto id = object["id"].integer();
  const auto refused = [&id](const char* reason) { return std::unexpected(RequestRefusal{id, reason}); };
  if (!id) return refused("request without id");
  if (object["sample_rate"].integer() != acceptedSampleRate) return refused("unsupported sample rate");
  TranscriptionRequest request{.id = *id, .samples = {}, .hints = {}};
  if (object.contains("language")) {
    request.hints.language = object["language"].text();
    if (!request.hints.language) return refused("malformed language");
  }
  if (object.contains("vocabulary")) {
    if (!object["vocabulary"].isArray()) return refused("malformed vocabulary");
    for (const auto& word : object["vocabulary"].elements()) {
      auto text = word.text();
      if (!text) return refused("malformed vocabulary");
      request.hints.words.push_back(*std::move(text));
    }
  }
  const auto audio = object[audioKey].view();
  if (!audio) return refused("request without audio");
  const auto bytes = base64::decoded(audio->empty() ? cut.audio : *audio);
  if (!bytes) return refused("audio is not valid base64");
  if (bytes->size() % 2 != 0) return refused("audio has an odd number of bytes");
  request.samples.resize(bytes->size() / 2);
  if (!bytes->empty()) std::memcpy(request.samples.data(), bytes->data(), bytes->size());
  return request;
}

}  // namespace murmel::worker
