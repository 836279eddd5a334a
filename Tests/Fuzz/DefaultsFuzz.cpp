#include "Require.h"
#include "Settings/DefaultsDocument.h"

#include <string>

using namespace murmel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  auto document = DefaultsDocument::parse(input);
  if (!document) return 0;
  const auto text = document->text();
  auto again = DefaultsDocument::parse(text);
  require(again.has_value(), "what was read can be written and read");
  require(again->text() == text, "and is the same");
  for (const auto* name : {"a", "settings.a", "s", ""}) {
    require(document->value(name) == again->value(name), "value by value");
  }
  document->set("settings.a", std::vector<std::uint8_t>(data, data + size));
  again = DefaultsDocument::parse(document->text());
  require(again && again->value("settings.a") == DefaultsValue(std::vector<std::uint8_t>(data, data + size)),
          "whatever is set is read back");
  document->remove("settings.a");
  require(!document->contains("settings.a"), "whatever is removed is gone");
  return 0;
}
