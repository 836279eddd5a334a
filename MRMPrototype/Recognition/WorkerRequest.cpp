#include "Recognition/WorkerRequest.h"

#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <string_view>

namespace murmel {

std::expected<std::string, std::string> encodeWorkerRequest(std::int64_t id, const CapturedAudio& audio,
                                                            const std::optional<std::string>& language,
                                                            const std::vector<std::string>& vocabulary) {
  if (!std::ranges::all_of(vocabulary, text::isValidUtf8) || !text::isValidUtf8(language.value_or("")))
    return std::unexpected("The language or the vocabulary is not UTF-8.");
  Json object = {{"id", id}, {"sample_rate", recognitionSampleRate}};
  if (language) object["language"] = *language;
  if (!vocabulary.empty()) object["vocabulary"] = vocabulary;
  auto line = jsonText(object);
  // The audio is put in by hand: base64 needs no escaping, and the serializer would look at each of its
  // millions of characters.
  constexpr std::string_view audioKey = R"(,"pcm_s16le_base64":")";
  constexpr std::string_view end = R"("})";
  line.pop_back();  // the closing brace
  line.reserve(line.size() + audioKey.size() + base64::encodedSize(audio.pcm16LE.size()) + end.size());
  line += audioKey;
  base64::appendEncoded(line, audio.pcm16LE);
  line += end;
  return line;
}

}  // namespace murmel
