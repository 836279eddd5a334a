#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace murmel {

/// Everything that stands on a clipboard, in its order and byte for byte. Nothing prints or logs it.
struct ClipboardSnapshot {
  /// The contents in one of the forms that the owner offers.
  struct Value {
    std::string type;      ///< the form's identifier ("UTF8_STRING", "image/png")
    std::string data;      ///< bytes
    std::string encoding;  ///< what the bytes are declared to be where that differs from `type`; else empty
    int unitBits = 8;      ///< 8, 16 or 32: how a reader of another byte order would swap `data`

    friend bool operator==(const Value&, const Value&) = default;
    friend std::ostream& operator<<(std::ostream&, const Value&) = delete;
  };

  /// One thing in several forms. Desktops without the notion of items have at most one.
  struct Item {
    std::vector<Value> values;

    friend bool operator==(const Item&, const Item&) = default;
  };

  std::vector<Item> items;

  [[nodiscard]] const Value* find(const std::string& type) const {
    for (const auto& item : items) {
      for (const auto& value : item.values) {
        if (value.type == type) return &value;
      }
    }
    return nullptr;
  }

  friend bool operator==(const ClipboardSnapshot&, const ClipboardSnapshot&) = default;
};

}  // namespace murmel
