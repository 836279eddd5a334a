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
  for (int number = 0; number < all.total_test_suite_count(); ++number) {
    const auto& suite = *all.GetTestSuite(number);
    const auto suiteName = std::string(":") + suite.name();
    std::string otherTests;
    int wanted = 0;
    for (int index = 0; index < suite.total_test_count(); ++index) {
      const auto& test = *suite.GetTestInfo(index);
      const auto source = nameOf(test.file());
      missing.erase(source);
      if (sources.contains(source))
        ++wanted;
      else
        otherTests.append(suiteName).append(".").append(test.name());
    }
    others += wanted == 0 ? suiteName + ".*" : otherTests;
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
