#include "Support/SelectedTests.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace murmel::test {

namespace {

std::string nameOf(const char* file) {
  return std::filesystem::path(file).stem().string();
}

std::map<std::string, Surroundings::Make>& allSurroundings() {
  static std::map<std::string, Surroundings::Make> all;
  return all;
}

}  // namespace

Surroundings::Surroundings(const char* source, Make make) {
  allSurroundings().emplace(nameOf(source), std::move(make));
}

// The program of all tests of a kind runs those of the sources that it is told (PasteboardContractTests ...),
// since each group has a session of its own. What GTEST_FILTER leaves out of them stays left out.
int runSelectedTests(const std::set<std::string>& sources) {
  auto missing = sources;
  std::string others;
  const auto& all = *testing::UnitTest::GetInstance();
  for (int suite = 0; suite < all.total_test_suite_count(); ++suite) {
    const auto& tests = *all.GetTestSuite(suite);
    for (int index = 0; index < tests.total_test_count(); ++index) {
      const auto& test = *tests.GetTestInfo(index);
      const auto source = nameOf(test.file());
      missing.erase(source);
      if (!sources.contains(source)) others.append(":").append(tests.name()).append(".").append(test.name());
    }
  }
  for (const auto& source : missing)
    std::fprintf(stderr, "No tests of %s are in this program.\n", source.c_str());
  if (sources.empty()) std::fputs("usage: ... SOURCE ..., as ctest --verbose shows them\n", stderr);
  if (sources.empty() || !missing.empty()) return 2;
  auto filter = GTEST_FLAG_GET(filter);
  if (!others.empty() && filter.find('-') == std::string::npos) others.replace(0, 1, "-");
  GTEST_FLAG_SET(filter, filter + others);
  std::vector<std::shared_ptr<void>> surroundings;
  for (const auto& source : sources) {
    if (const auto made = allSurroundings().find(source); made != allSurroundings().end())
      surroundings.push_back(made->second());
  }
  return RUN_ALL_TESTS();
}

}  // namespace murmel::test

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  return murmel::test::runSelectedTests({arguments + 1, arguments + count});
}
