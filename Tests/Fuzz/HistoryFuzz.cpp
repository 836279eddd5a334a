#include "AnotherReader.h"
#include "History/HistoryCodec.h"

using namespace murmel;

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
