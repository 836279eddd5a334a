#include "Platform/Linux/PropertyList/LibplistReader.h"

#include <cstdlib>
#include <limits>
#include <memory>

#include <plist/plist.h>

namespace murmel {

namespace {

using Tree = std::unique_ptr<void, decltype(&plist_free)>;
using Text = std::unique_ptr<char, decltype(&std::free)>;

std::string stringOf(plist_t node) {
  std::uint64_t size = 0;
  const auto* const characters = plist_get_string_ptr(node, &size);
  return {characters, size};
}

std::optional<DefaultsValue> stringArray(plist_t node) {
  std::vector<std::string> strings;
  for (std::uint32_t index = 0; index < plist_array_get_size(node); ++index) {
    const auto element = plist_array_get_item(node, index);
    if (plist_get_node_type(element) != PLIST_STRING) return std::nullopt;
    strings.push_back(stringOf(element));
  }
  return strings;
}

/// Dates, dictionaries and mixed arrays are no values of a preference store.
std::optional<DefaultsValue> valueOf(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return value != 0;
    }
    case PLIST_UINT: {
      std::uint64_t value = 0;
      plist_get_uint_val(node, &value);
      // Negative numbers come as their two's complement.
      return static_cast<std::int64_t>(value);
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return value;
    }
    case PLIST_STRING:
      return stringOf(node);
    case PLIST_DATA: {
      std::uint64_t size = 0;
      const auto* const data = plist_get_data_ptr(node, &size);
      const auto* const bytes = reinterpret_cast<const std::uint8_t*>(data);
      return std::vector<std::uint8_t>(bytes, bytes + size);
    }
    case PLIST_ARRAY:
      return stringArray(node);
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<std::map<std::string, DefaultsValue>> LibplistReader::read(
    std::span<const std::uint8_t> bytes) const {
  if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  plist_t root = nullptr;
  plist_from_memory(reinterpret_cast<const char*>(bytes.data()), static_cast<std::uint32_t>(bytes.size()),
                    &root);
  const Tree tree(root, &plist_free);
  if (root == nullptr || plist_get_node_type(root) != PLIST_DICT) return std::nullopt;
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(root, &iterator);
  const std::unique_ptr<void, decltype(&std::free)> iteration(iterator, &std::free);
  std::map<std::string, DefaultsValue> members;
  while (true) {
    char* key = nullptr;
    plist_t node = nullptr;
    plist_dict_next_item(root, iterator, &key, &node);
    const Text held(key, &std::free);
    if (node == nullptr) break;
    if (auto value = valueOf(node)) members.insert_or_assign(key, std::move(*value));
  }
  return members;
}

}  // namespace murmel
