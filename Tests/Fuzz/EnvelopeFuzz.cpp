#include "AnotherReader.h"
#include "Storage/SecureLocalEnvelope.h"

using namespace murmel;

namespace {

void check(std::span<const std::uint8_t> file) {
  const auto envelope = SecureLocalEnvelope::decode(file);
  if (!envelope) return;
  const auto again = envelope->encode();
  const auto decoded = SecureLocalEnvelope::decode(
      std::span(reinterpret_cast<const std::uint8_t*>(again.data()), again.size()));
  require(decoded.has_value(), "what was read can be written and read");
  require(decoded->version == envelope->version && decoded->keyID == envelope->keyID &&
              decoded->sealedData == envelope->sealedData,
          "and is the same");
  const auto json = independently(file.begin() + SecureLocalEnvelope::magic.size(), file.end());
  if (json.is_null()) return;
  require(json["keyID"] == envelope->keyID && json["version"] == envelope->version, "and reads the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  check({data, size});
  // Most random files fail at the magic; this is the road behind it.
  constexpr auto magic = SecureLocalEnvelope::magic;
  std::vector<std::uint8_t> withMagic(magic.begin(), magic.end());
  withMagic.insert(withMagic.end(), data, data + size);
  check(withMagic);
  return 0;
}
