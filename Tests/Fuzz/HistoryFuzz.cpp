#include "History/HistoryCodec.h"
#include "Require.h"

#include <nlohmann/json.hpp>

using namespace murmel;

namespace {

/// What another reader makes of the text. It refuses numbers beyond a double, which we may skip.
template <class Iterator>
nlohmann::json independently(Iterator begin, Iterator end) {
  try {
    return nlohmann::json::parse(begin, end);
  } catch (const nlohmann::json::out_of_range&) {
    return nullptr;
  } catch (const nlohmann::json::parse_error&) {
    require(false, "an independent reader accepts it");
    return nullptr;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto entries = decodeHistory({data, size});
  if (!entries) return 0;
  const auto bytes = encodeHistory(*entries);
  require(decodeHistory(bytes.reveal()) == *entries, "what was read survives a write and a read");
  const auto json = independently(data, data + size);
  if (json.is_null()) return 0;
  require(json.size() == entries->size(), "and sees as many entries");
  for (std::size_t index = 0; index < entries->size(); ++index) {
    require(json[index]["text"] == (*entries)[index].text.reveal(), "and reads the same words");
    require(json[index]["createdAt"] == (*entries)[index].createdAt, "and the same date");
  }
  return 0;
}
