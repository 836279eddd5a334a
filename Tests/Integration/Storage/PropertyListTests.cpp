#include "Platform/Linux/PropertyList/LibplistReader.h"
#include "Support/FileBytes.h"
#include "Support/Testing.h"

#include <plist/plist.h>

namespace {

const std::string xmlList = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
  <key>settings.historyEnabled</key><true/>
  <key>settings.feedbackSound</key><false/>
  <key>settings.count</key><integer>42</integer>
  <key>settings.negative</key><integer>-7</integer>
  <key>settings.scale</key><real>1.5</real>
  <key>settings.language</key><string>Grüße &amp; mehr</string>
  <key>settings.selectedLanguages</key><array><string>de</string><string>en</string></array>
  <key>settings.shortcutConfiguration</key><data>eyJraW5kIjoiZGlzYWJsZWQifQ==</data>
  <key>settings.date</key><date>2025-01-01T00:00:00Z</date>
  <key>settings.nested</key><dict><key>a</key><true/></dict>
  <key>settings.mixed</key><array><string>a</string><true/></array>
</dict></plist>
)";

std::vector<std::uint8_t> binaryOf(const std::string& xml) {
  plist_t tree = nullptr;
  plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &tree);
  char* bytes = nullptr;
  std::uint32_t size = 0;
  plist_to_bin(tree, &bytes, &size);
  const std::vector<std::uint8_t> result(bytes, bytes + size);
  std::free(bytes);
  plist_free(tree);
  return result;
}

}  // namespace

TEST(PropertyList, ReadsBothFormsAndLeavesOutWhatIsNoPreference) {
  const LibplistReader reader;
  for (const auto& bytes : {bytesOf(xmlList), binaryOf(xmlList)}) {
    const auto members = reader.read(bytes);
    ASSERT_TRUE(members);
    const std::map<std::string, DefaultsValue> expected{
        {"settings.count", std::int64_t{42}},
        {"settings.feedbackSound", false},
        {"settings.historyEnabled", true},
        {"settings.language", std::string("Grüße & mehr")},
        {"settings.negative", std::int64_t{-7}},
        {"settings.scale", 1.5},
        {"settings.selectedLanguages", Strings{"de", "en"}},
        {"settings.shortcutConfiguration", bytesOf(R"({"kind":"disabled"})")}};
    EXPECT_EQ(*members, expected);
  }
}

TEST(PropertyList, RefusesWhatIsNone) {
  const LibplistReader reader;
  auto cut = binaryOf(xmlList);
  cut.resize(cut.size() / 2);
  EXPECT_FALSE(reader.read(cut));
  for (const auto* text :
       {"", "bplist00", "<plist><string>a</string></plist>", "{\"a\":1}", "<plist><dict>"}) {
    const auto members = reader.read(bytesOf(text));
    EXPECT_TRUE(!members || members->empty()) << text;
  }
}
