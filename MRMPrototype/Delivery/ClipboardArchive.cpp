#include "Delivery/ClipboardArchive.h"

#include <cstdint>
#include <utility>

namespace murmel {

namespace {

// The signature, the number of items; for each item the number of values; for each value its unit, then type,
// encoding and data, each after its length. Numbers are 64 bits, least significant byte first.
constexpr std::string_view signature = "MRMCLIP1";
constexpr int numberSize = 8;

void append(std::string& bytes, std::uint64_t number) {
  for (int index = 0; index < numberSize; ++index) bytes += static_cast<char>(number >> (8 * index) & 0xFF);
}

void append(std::string& bytes, const std::string& text) {
  append(bytes, text.size());
  bytes += text;
}

/// Takes parts off the front of an archive; from the first that is not whole on, everything fails.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : left_(bytes) {}

  std::string_view take(std::uint64_t size) {
    if (size > left_.size()) isWhole_ = false;
    if (!isWhole_) return {};
    const auto taken = left_.substr(0, size);
    left_.remove_prefix(size);
    return taken;
  }
  std::uint64_t number() {
    std::uint64_t number = 0;
    int shift = 0;
    for (const auto byte : take(numberSize)) {
      number |= static_cast<std::uint64_t>(static_cast<unsigned char>(byte)) << shift;
      shift += 8;
    }
    return number;
  }
  std::string text() { return std::string(take(number())); }

  [[nodiscard]] bool isWhole() const { return isWhole_; }
  [[nodiscard]] bool isAtEnd() const { return isWhole_ && left_.empty(); }

 private:
  std::string_view left_;
  bool isWhole_ = true;
};

}  // namespace

std::string archived(const ClipboardSnapshot& contents) {
  std::string bytes(signature);
  append(bytes, contents.items.size());
  for (const auto& item : contents.items) {
    append(bytes, item.values.size());
    for (const auto& value : item.values) {
      append(bytes, static_cast<std::uint64_t>(value.unitBits));
      append(bytes, value.type);
      append(bytes, value.encoding);
      append(bytes, value.data);
    }
  }
  return bytes;
}

std::optional<ClipboardSnapshot> unarchived(std::string_view bytes) {
  Reader reader(bytes);
  if (reader.take(signature.size()) != signature) return std::nullopt;
  ClipboardSnapshot contents;
  const auto items = reader.number();
  for (std::uint64_t item = 0; item < items && reader.isWhole(); ++item) {
    auto& values = contents.items.emplace_back().values;
    const auto count = reader.number();
    for (std::uint64_t index = 0; index < count && reader.isWhole(); ++index) {
      ClipboardSnapshot::Value value;
      value.unitBits = static_cast<int>(reader.number());
      value.type = reader.text();
      value.encoding = reader.text();
      value.data = reader.text();
      const bool isUnit = value.unitBits == 8 || value.unitBits == 16 || value.unitBits == 32;
      if (!isUnit || value.type.empty()) return std::nullopt;
      values.push_back(std::move(value));
    }
  }
  if (!reader.isAtEnd()) return std::nullopt;
  return contents;
}

}  // namespace murmel
