#pragma once

#include "Platform/DefaultsValue.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace murmel {

/// The user's preferences: typed values under dotted keys. What is set is kept right away; what cannot be
/// kept stays in memory. Main thread.
class DefaultsStore {
 public:
  virtual ~DefaultsStore() = default;

  /// Nothing when the key is absent or holds something that is no DefaultsValue.
  [[nodiscard]] virtual std::optional<DefaultsValue> value(std::string_view key) const = 0;
  /// Whether there is anything under the key.
  [[nodiscard]] virtual bool contains(std::string_view key) const = 0;
  virtual void set(std::string_view key, DefaultsValue value) = 0;
  virtual void remove(std::string_view key) = 0;

  /// The value when it is there and of this type.
  template <class T>
  [[nodiscard]] std::optional<T> get(std::string_view key) const {
    auto found = value(key);
    if (!found || !std::holds_alternative<T>(*found)) return std::nullopt;
    return std::get<T>(std::move(*found));
  }
  [[nodiscard]] bool boolean(std::string_view key, bool fallback) const {
    return get<bool>(key).value_or(fallback);
  }
};

}  // namespace murmel
