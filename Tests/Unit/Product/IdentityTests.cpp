#include "Product/InformationDictionary.h"
#include "Product/MRMAppIdentity.h"
#include "Product/MRMBuildIdentity.h"
#include "Support/BuildPaths.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

using Values = std::map<std::string, std::string, std::less<>>;

const Values completeEdition{
    {"CFBundleIdentifier", "app.murmel.Murmel"},
    {"MRMEdition", "complete"},
    {"MRMDistributionChannel", "developer-id"},
    {"MRMModelDownloaderServiceName", "app.murmel.Murmel.model-downloader"},
};

Values with(Values values, const std::string& key, const std::optional<std::string>& value) {
  if (value) {
    values[key] = *value;
  } else {
    values.erase(key);
  }
  return values;
}

}  // namespace

TEST(MRMBuildIdentity, ReadsTheDictionaryAndFallsBack) {
  struct Row {
    Values values;
    MRMBuildIdentity identity;
  };
  for (const auto& row : std::vector<Row>{
           {{}, {"Murmel", "Unknown", "Unknown", "Development build"}},
           {{{"CFBundleDisplayName", "Shown"},
             {"CFBundleName", "Short"},
             {"CFBundleShortVersionString", "1.2"},
             {"CFBundleVersion", "34"},
             {"MRMEdition", "complete"}},
            {"Shown", "1.2", "34", "Full edition"}},
           {{{"CFBundleName", "Short"}, {"MRMEdition", "lite"}},
            {"Short", "Unknown", "Unknown", "Lite edition"}},
           {{{"MRMEdition", "Complete"}}, {"Murmel", "Unknown", "Unknown", "Development build"}},
           {{{"MRMEdition", ""}}, {"Murmel", "Unknown", "Unknown", "Development build"}},
       }) {
    const auto identity = MRMBuildIdentity::from(InformationDictionary(row.values));
    EXPECT_EQ(identity, row.identity) << identity.displayName << ", " << identity.editionName;
  }
}

TEST(MRMAppIdentity, NamesTheDownloaderServiceOnlyWhenEverythingAgrees) {
  struct Row {
    const char* what;
    Values values;
    std::optional<std::string> name;
  };
  const std::string key = "MRMModelDownloaderServiceName";
  for (const auto& row : std::vector<Row>{
           {"all agrees", completeEdition, "app.murmel.Murmel.model-downloader"},
           {"no name", with(completeEdition, key, {}), {}},
           {"another name", with(completeEdition, key, "app.murmel.Murmel.Lite.model-downloader"), {}},
           {"a longer name", with(completeEdition, key, "app.murmel.Murmel.model-downloader2"), {}},
           {"no identifier", with(completeEdition, "CFBundleIdentifier", {}), {}},
           {"a foreign identifier",
            with(with(completeEdition, "CFBundleIdentifier", "app.other"), key, "app.other.model-downloader"),
            {}},
           {"the complete edition from a store",
            with(completeEdition, "MRMDistributionChannel", "app-store"),
            {}},
           {"the complete edition from nowhere", with(completeEdition, "MRMDistributionChannel", {}), {}},
           {"the lite edition needs no channel",
            {{"CFBundleIdentifier", "app.murmel.Murmel.Lite"},
             {"MRMEdition", "lite"},
             {key, "app.murmel.Murmel.Lite.model-downloader"}},
            "app.murmel.Murmel.Lite.model-downloader"},
           {"nothing at all", {}, {}},
       }) {
    EXPECT_EQ(MRMAppIdentity::downloaderServiceName(InformationDictionary(row.values)), row.name) << row.what;
  }
}

TEST(MRMAppIdentity, FallsBackToTheIdentifierOfTheEdition) {
  const auto identifier = [](Values values) {
    return MRMAppIdentity::applicationIdentifier(InformationDictionary(std::move(values)));
  };
  EXPECT_EQ(identifier({{"CFBundleIdentifier", "app.murmel.Murmel"}, {"MRMEdition", "lite"}}),
            "app.murmel.Murmel");
  EXPECT_EQ(identifier({{"CFBundleIdentifier", "app.other"}, {"MRMEdition", "lite"}}),
            "app.murmel.Murmel.Lite");
  EXPECT_EQ(identifier({}), "app.murmel.Murmel.Development");
}

TEST(InformationDictionary, ReadsStringsOfAJsonObject) {
  const TemporaryFolder folder;
  const auto file = folder.path() / "Info.json";
  const auto reading = [&file](const std::string& content) {
    std::ofstream(file, std::ios::binary) << content;
    return InformationDictionary::read(file);
  };
  const auto read = reading(R"({"a": "ä", "n": 5, "o": {"a": "x"}})");
  ASSERT_TRUE(read);
  EXPECT_EQ(read->string("a"), "ä");
  EXPECT_EQ(read->string("n"), std::nullopt);
  EXPECT_EQ(read->string("missing"), std::nullopt);
  for (const auto* broken : {"", "{", "[]", "\"a\"", "{\"a\": \"\xFF\"}"}) {
    const auto result = reading(broken);
    ASSERT_FALSE(result) << broken;
    EXPECT_NE(result.error().find(file.string()), std::string::npos) << "the error names the file";
  }
  std::filesystem::remove(file);
  EXPECT_FALSE(InformationDictionary::read(file));
}

TEST(Editions, AreWhatTheBuildWritesAboutThem) {
  struct Row {
    std::string edition, channel, identifier, tagline;
    bool downloads;
  };
  const TemporaryFolder folder;
  const auto file = (folder.path() / "Info.json").string();
  for (const auto& row : std::vector<Row>{
           {"complete", "developer-id", "app.murmel.Murmel", "Ready offline · Models included", true},
           {"complete", "app-store", "app.murmel.Murmel", "Ready offline · Models included", false},
           {"lite", "app-store", "app.murmel.Murmel.Lite", "Lite · Models on demand", true},
           {"development", "developer-id", "app.murmel.Murmel.Development", "Local development", true},
       }) {
    const auto source = sourceFolder();
    const auto build = "cmake -D SOURCE=" + source + " -D TEMPLATE=" + source +
                       "/MRMPrototype/Shell/Info.json.in -D OUTPUT=" + file +
                       " -D VERSION=1.2 -D BUILD_NUMBER=34 " + "-D EDITION=" + row.edition +
                       " -D CHANNEL=" + row.channel + " -P " + source + "/cmake/MurmelInformation.cmake";
    ASSERT_EQ(std::system(build.c_str()), 0);  // NOLINT(concurrency-mt-unsafe): one thread
    const auto info = InformationDictionary::read(file);
    ASSERT_TRUE(info) << info.error();
    EXPECT_EQ(MRMBuildIdentity::from(*info).buildNumber, "34");
    EXPECT_EQ(MRMAppIdentity::applicationIdentifier(*info), row.identifier);
    EXPECT_EQ(editionTagline(distributionEdition(*info)), row.tagline);
    EXPECT_EQ(distributionChannel(*info) == MRMDistributionChannel::appStore, row.channel == "app-store");
    EXPECT_EQ(MRMAppIdentity::downloaderServiceName(*info).has_value(), row.downloads) << row.edition;
  }
}
