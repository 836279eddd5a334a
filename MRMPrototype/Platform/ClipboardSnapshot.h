#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <string.h>  // explicit_bzero

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

  [[nodiscard]] bool isEmpty() const {
    for (const auto& item : items) {
      if (!item.values.empty()) return false;
    }
    return true;
  }

  friend bool operator==(const ClipboardSnapshot&, const ClipboardSnapshot&) = default;
};

/// Contents that several hold at once without copying them: a picture may have a hundred megabytes.
using SharedSnapshot = std::shared_ptr<const ClipboardSnapshot>;

/// What the user had copied may be a password: the bytes are overwritten when the last holder lets go.
inline SharedSnapshot shared(ClipboardSnapshot contents) {
  const auto wipe = [](ClipboardSnapshot* held) {
    for (auto& item : held->items) {
      for (auto& value : item.values) ::explicit_bzero(value.data.data(), value.data.size());
    }
    delete held;
  };
  return {new ClipboardSnapshot(std::move(contents)), wipe};
}

}  // namespace murmel
