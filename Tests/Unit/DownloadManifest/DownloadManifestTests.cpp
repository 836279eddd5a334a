#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "MRMDownloadManifest/MRMModelDownloadPolicy.h"
#include "Support/Testing.h"

namespace {

using Importance = MRMModelDownloadImportance;

TEST(DownloadManifest, FindsAnEntryOfEveryListAndNothingElse) {
  const auto* config = MRMDownloadManifest::asset("parakeet:config.json");
  ASSERT_NE(config, nullptr);
  EXPECT_EQ(config->byteCount, 2);
  EXPECT_EQ(config->url(),
            "https://huggingface.co/FluidInference/parakeet-tdt-0.6b-v3-coreml/resolve/"
            "775be920d492d20e9e522ee0a969414fd6e6e0f7/config.json?download=true");
  EXPECT_EQ(config->storePath(), "Parakeet/parakeet-tdt-0.6b-v3-coreml/config.json");

  const auto* qwen = MRMDownloadManifest::asset("qwen:0.6b");
  ASSERT_NE(qwen, nullptr);
  EXPECT_EQ(qwen->relativePath, std::nullopt);
  EXPECT_EQ(qwen->byteCount, std::nullopt);
  EXPECT_EQ(qwen->storePath(), "Refinement/Qwen3-0.6B-Q8_0.gguf");

  const auto* ggml = MRMDownloadManifest::asset("parakeet-ggml:q8_0");
  ASSERT_NE(ggml, nullptr);
  EXPECT_EQ(ggml->byteCount, 668757119);

  for (const auto* foreign : {"", "parakeet", "parakeet:", "parakeet:../config.json", "PARAKEET:config.json",
                              "https://huggingface.co/", "qwen:0.6b "}) {
    EXPECT_EQ(MRMDownloadManifest::asset(foreign), nullptr) << foreign;
  }
}

TEST(DownloadPolicy, DoublesTheDelayUpToHalfAMinute) {
  const int seconds[] = {1, 2, 4, 8, 16, 30, 30};
  for (int n = 0; n < 7; ++n) EXPECT_EQ(MRMModelDownloadPolicy::retryDelay(n).count(), seconds[n]) << n;
  EXPECT_EQ(MRMModelDownloadPolicy::retryDelay(-3).count(), 1);
  EXPECT_EQ(MRMModelDownloadPolicy::retryDelay(2'000'000'000).count(), 30);
}

TEST(DownloadPolicy, RetriesWhatMayPassByItself) {
  const auto url = std::string(urlErrorDomain);
  const auto key = std::string(MRMModelDownloadPolicy::retryableHTTPResponseKey);
  struct Row {
    const char* name;
    MRMTransferError error;
    bool retryable;
  };
  std::vector<Row> rows = {
      {"another domain", {"NSPOSIXErrorDomain", -1001, {}}, false},
      {"a marked response of any domain", {"HTTP", 503, {{key, true}}}, true},
      {"a response marked false", {"HTTP", 404, {{key, false}}}, false},
      {"a mark that is no boolean", {"HTTP", 503, {{key, std::int64_t{1}}}}, false},
      {"a mark that is text", {"HTTP", 503, {{key, std::string("true")}}}, false},
      {"marked false, yet a lost connection", {url, -1005, {{key, false}}}, true},
  };
  for (const int code : {-1001, -1003, -1004, -1005, -1006, -1009, -1008, -997}) {
    rows.push_back({"passing", {url, code, {}}, true});
  }
  for (const int code : {-999, -1000, -1002, -1007, -1010, -1011, -1202, 0, 1001}) {
    rows.push_back({"lasting", {url, code, {}}, false});
  }
  for (const auto& row : rows) {
    EXPECT_EQ(MRMModelDownloadPolicy::isRetryable(row.error), row.retryable)
        << row.name << " " << row.error.code;
  }
}

TEST(DownloadPolicy, SchedulesOptionalDownloadsBehindRequiredOnesAndDictations) {
  using Policy = MRMModelDownloadPolicy;
  for (const bool requiredActive : {false, true}) {
    for (const bool runtimeActive : {false, true}) {
      EXPECT_EQ(Policy::scheduling(Importance::required, requiredActive, runtimeActive),
                (MRMModelDownloadScheduling{0.75, false}));
      EXPECT_EQ(Policy::scheduling(Importance::optional, requiredActive, runtimeActive),
                (MRMModelDownloadScheduling{requiredActive ? 0.25 : 0.5, runtimeActive}));
    }
  }
}

}  // namespace
