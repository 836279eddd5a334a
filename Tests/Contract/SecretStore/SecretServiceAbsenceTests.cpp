#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Support/ChildProgram.h"
#include "Support/FileBytes.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

// A process of its own: the library keeps to the first session bus that it has found.

namespace {

constexpr auto* service = "app.murmel.Test.absence";

/// Sends everything that connects from now on to another session bus.
class OtherBus {
 public:
  explicit OtherBus(const std::string& address) { ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1); }
  ~OtherBus() { ::setenv("DBUS_SESSION_BUS_ADDRESS", before_.c_str(), 1); }

 private:
  std::string before_ = std::getenv("DBUS_SESSION_BUS_ADDRESS");
};

/// A bus that starts no services and has none.
class EmptyBus : public ChildProgram {
 public:
  explicit EmptyBus(const std::filesystem::path& folder)
      : ChildProgram(
            {"dbus-daemon", "--nofork", "--print-address", "--config-file=" + configuration(folder)}) {}
  std::string address = line();

 private:
  static std::string configuration(const std::filesystem::path& folder) {
    const auto file = folder / "bus.conf";
    writeFile(file,
              "<busconfig><type>session</type><listen>unix:dir=" + folder.string() +
                  "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                  "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    return file;
  }
};

SecretStatus statusOfEveryCall(SecretStore& store) {
  const auto found = store.find(service, "x");
  const auto added = store.add(service, "x", SecretBytes(32));
  const auto removed = store.remove(service, "x");
  if (found || added || removed) return secretStatus::success;
  EXPECT_EQ(found.error(), added.error());
  EXPECT_EQ(found.error(), removed.error());
  return found.error();
}

}  // namespace

TEST(SecretServiceAbsence, NoBus) {
  const OtherBus bus("unix:path=/nonexistent/bus");
  SecretServiceStore store;
  EXPECT_EQ(statusOfEveryCall(store), secretStatus::serviceUnavailable);
  EXPECT_EQ(store.unlock().error(), secretStatus::serviceUnavailable);
}

TEST(SecretServiceAbsence, NoService) {
  const TemporaryFolder folder;
  EmptyBus empty(folder.path());
  ASSERT_FALSE(empty.address.empty());
  const OtherBus bus(empty.address);
  SecretServiceStore store;
  EXPECT_EQ(statusOfEveryCall(store), secretStatus::serviceUnavailable);
  EXPECT_EQ(store.unlock().error(), secretStatus::serviceUnavailable);
  // The end of the bus is not ours.
  empty.end(SIGTERM);
  EXPECT_EQ(statusOfEveryCall(store), secretStatus::serviceUnavailable);
}
