#include "Shell/XdgAutostart.h"
#include "Support/FileBytes.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

TEST(XdgAutostart, switches_its_own_entry_and_overrules_that_of_the_system) {
  const TemporaryFolder folder;
  const auto own = folder.path() / "config/autostart/app.example.desktop";
  const auto system = folder.path() / "etc";
  std::filesystem::create_directories(system);
  XdgAutostart autostart(folder.path() / "config",
                         {"app.example", "Example", "/opt/my \"$ apps\"/100%/example"}, system);
  EXPECT_FALSE(autostart.isOn());
  ASSERT_TRUE(autostart.set(true));
  EXPECT_TRUE(autostart.isOn());
  const auto entry = contentsOf(own);
  EXPECT_NE(entry.find(R"(Exec="/opt/my \\"\\$ apps\\"/100%%/example")"), std::string::npos) << entry;
  ASSERT_TRUE(autostart.set(false));
  EXPECT_FALSE(std::filesystem::exists(own));

  std::ofstream(system / "app.example.desktop") << "[Desktop Entry]\nExec=example\n";
  EXPECT_TRUE(autostart.isOn());
  ASSERT_TRUE(autostart.set(false));
  EXPECT_FALSE(autostart.isOn());
  EXPECT_TRUE(std::filesystem::exists(own));
  ASSERT_TRUE(autostart.set(true));
  EXPECT_FALSE(std::filesystem::exists(own));
  EXPECT_TRUE(autostart.isOn());

  std::filesystem::remove(system / "app.example.desktop");
  std::filesystem::remove_all(folder.path() / "config");
  std::ofstream(folder.path() / "config") << "a file where the folder should be";
  EXPECT_FALSE(autostart.set(true));
}

}  // namespace
