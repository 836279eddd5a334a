#include "Support/BuildPaths.h"
#include "Support/Testing.h"

// Keys are what a password is made of: the code that sees them has no way to write anything anywhere.
TEST(KeyPrivacy, CodeThatSeesKeysCannotLogOrPrint) {
  const std::filesystem::path source(murmel::sourceFolder() + "/MRMPrototype");
  int files = 0;
  for (const auto* folder : {"Shortcut", "Platform/Linux/X11Keys"}) {
    if (!std::filesystem::exists(source / folder)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(source / folder)) {
      if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") continue;
      ++files;
      std::ifstream stream(entry.path());
      const std::string text{std::istreambuf_iterator<char>(stream), {}};
      for (const auto* way : {"Foundation/Log.h", "<iostream>", "<fstream>", "<fmt/", "<cstdio>", "printf(",
                              "std::cerr", "std::cout", "syslog", "sd_journal", "qDebug"}) {
        EXPECT_EQ(text.find(way), std::string::npos) << entry.path() << " uses " << way;
      }
    }
  }
  EXPECT_GE(files, 10);
}
