#include "Recognition/WorkerRequest.h"

#include "Foundation/Crypto/Base64.h"

#include <string_view>

#include <nlohmann/json.hpp>

namespace murmel {

std::expected<std::string, std::string> encodeWorkerRequest(std::int64_t id, const CapturedAudio& audio,
                                                            const std::optional<std::string>& language,
                                                            const std::vector<std::string>& vocabulary) {
  nlohmann::json object = {{"id", id}, {"sample_rate", recognitionSampleRate}};
  if (language) object["language"] = *language;
  if (!vocabulary.empty()) object["vocabulary"] = vocabulary;
  std::string line;
  try {
    line = object.dump();
  } catch (const nlohmann::json::exception& failure) {
    return std::unexpected(failure.what());
  }
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
