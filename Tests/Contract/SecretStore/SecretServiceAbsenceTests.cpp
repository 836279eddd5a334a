#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Support/FileBytes.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <csignal>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

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
class EmptyBus {
 public:
  explicit EmptyBus(const std::filesystem::path& folder) {
    const auto configuration = folder / "bus.conf";
    writeFile(configuration,
              "<busconfig><type>session</type><listen>unix:dir=" + folder.string() +
                  "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                  "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
                  "</busconfig>");
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) return;
    const auto argument = "--config-file=" + configuration.string();
    const auto print = "--print-address=" + std::to_string(ends[1]);
    process_ = ::fork();
    if (process_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGTERM);
      ::execlp("dbus-daemon", "dbus-daemon", "--nofork", argument.c_str(), print.c_str(), nullptr);
      ::_exit(1);
    }
    ::close(ends[1]);
    std::array<char, 512> line{};
    const auto size = ::read(ends[0], line.data(), line.size());
    ::close(ends[0]);
    if (size > 1) address_.assign(line.data(), static_cast<std::size_t>(size) - 1);
  }
  ~EmptyBus() { end(); }

  void end() {
    if (process_ <= 0) return;
    ::kill(process_, SIGTERM);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
  }
  [[nodiscard]] const std::string& address() const { return address_; }

 private:
  pid_t process_ = -1;
  std::string address_;
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
  ASSERT_FALSE(empty.address().empty());
  const OtherBus bus(empty.address());
  SecretServiceStore store;
  EXPECT_EQ(statusOfEveryCall(store), secretStatus::serviceUnavailable);
  EXPECT_EQ(store.unlock().error(), secretStatus::serviceUnavailable);
  // The end of the bus is not ours.
  empty.end();
  EXPECT_EQ(statusOfEveryCall(store), secretStatus::serviceUnavailable);
}
