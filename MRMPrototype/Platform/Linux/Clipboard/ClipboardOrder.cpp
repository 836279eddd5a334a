#include "Platform/Linux/Clipboard/ClipboardKeeper.h"

#include <cstring>
#include <utility>

namespace murmel {

namespace {

// Both ends are one build on one machine: the numbers are in its own byte order.
template <class T>
void put(std::string& bytes, T number) {
  bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void putText(std::string& bytes, const std::string& text) {
  put(bytes, static_cast<std::uint64_t>(text.size()));
  bytes += text;
}

/// Reads from the front of bytes that may be too short; then everything that follows fails too.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  template <class T>
  T number() {
    T value{};
    const auto taken = take(sizeof value);
    if (taken.size() == sizeof value) std::memcpy(&value, taken.data(), taken.size());
    return value;
  }
  std::string text() { return std::string(take(number<std::uint64_t>())); }
  [[nodiscard]] bool isAtEnd() const { return !failed_ && bytes_.empty(); }
  [[nodiscard]] bool hasMore() const { return !failed_ && !bytes_.empty(); }

 private:
  std::string_view take(std::uint64_t size) {
    if (failed_ || size > bytes_.size()) {
      failed_ = true;
      return {};
    }
    const auto taken = bytes_.substr(0, size);
    bytes_.remove_prefix(size);
    return taken;
  }

  std::string_view bytes_;
  bool failed_ = false;
};

}  // namespace

std::string ClipboardOrder::encoded() const {
  std::string body;
  for (const auto& item : contents.items) {
    for (const auto& value : item.values) {
      put(body, static_cast<std::uint8_t>(value.unitBits));
      putText(body, value.type);
      putText(body, value.encoding);
      putText(body, value.data);
    }
  }
  std::string bytes;
  bytes.reserve(clipboardOrderHeadSize + body.size());
  put(bytes, kind);
  put(bytes, ownedSince);
  put(bytes, static_cast<std::uint64_t>(body.size()));
  return bytes += body;
}

std::optional<std::uint64_t> clipboardOrderBodySize(std::string_view head) {
  Reader reader(head);
  const auto kind = reader.number<ClipboardOrder::Kind>();
  reader.number<std::uint32_t>();
  const auto size = reader.number<std::uint64_t>();
  const bool isKnown = kind == ClipboardOrder::Kind::keep || kind == ClipboardOrder::Kind::take;
  return isKnown && reader.isAtEnd() ? std::optional(size) : std::nullopt;
}

std::optional<ClipboardOrder> decodedClipboardOrder(std::string_view head, std::string_view body) {
  if (clipboardOrderBodySize(head) != body.size()) return std::nullopt;
  Reader headReader(head);
  ClipboardOrder order;
  order.kind = headReader.number<ClipboardOrder::Kind>();
  order.ownedSince = headReader.number<std::uint32_t>();
  Reader reader(body);
  ClipboardSnapshot::Item item;
  while (reader.hasMore()) {
    ClipboardSnapshot::Value value;
    value.unitBits = reader.number<std::uint8_t>();
    value.type = reader.text();
    value.encoding = reader.text();
    value.data = reader.text();
    const bool isUnit = value.unitBits == 8 || value.unitBits == 16 || value.unitBits == 32;
    if (!isUnit || value.type.empty()) return std::nullopt;
    item.values.push_back(std::move(value));
  }
  if (!reader.isAtEnd()) return std::nullopt;
  if (!item.values.empty()) order.contents.items.push_back(std::move(item));
  return order;
}

}  // namespace murmel
