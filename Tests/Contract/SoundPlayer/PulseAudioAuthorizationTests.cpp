#include "Platform/Linux/PulseAudio/PulseAudioAuthorization.h"
#include "Support/Awaiting.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

using enum MicrophonePermissionPhase;

namespace {

MicrophonePermissionPhase phaseOf(std::filesystem::path socket, bool sandboxed) {
  const PulseAudioAuthorization authorization({std::move(socket), sandboxed});
  return authorization.phase();
}

}  // namespace

TEST(PulseAudioAuthorization, NobodyRestrictsOutsideASandbox) {
  const TemporaryFolder folder;
  const auto socket = folder.write("native", {});
  const auto missing = folder.path() / "missing";
  EXPECT_EQ(phaseOf(socket, false), authorized);
  EXPECT_EQ(phaseOf(socket, true), authorized) << "the sandbox hands the sound on";
  EXPECT_EQ(phaseOf(missing, false), authorized) << "no server is no refusal";
  EXPECT_EQ(phaseOf(missing, true), restricted);
  EXPECT_EQ(phaseOf({}, true), authorized) << "somebody named a server";
}

TEST(PulseAudioAuthorization, ASocketOfSomebodyElseRefuses) {
  const TemporaryFolder folder;
  const auto socket = folder.write("native", {});
  std::filesystem::permissions(socket, std::filesystem::perms::none);
  // Nothing is closed to root, so somebody else asks, in a process of his own.
  const auto ask = [&] {
    constexpr uid_t nobody = 65'534;
    if (::geteuid() == 0 && ::setresuid(nobody, nobody, nobody) != 0) _exit(2);
    _exit(phaseOf(socket, false) == denied ? 0 : 1);
  };
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  EXPECT_EXIT(ask(), ::testing::ExitedWithCode(0), "");
}

TEST(PulseAudioAuthorization, ThereIsNoDialogAndTheEnvironmentDecides) {
  const TemporaryFolder folder;
  PulseAudioAuthorization sandboxed({folder.path() / "missing", true});
  Awaiting<bool> refused(sandboxed.requestAccess());
  EXPECT_TRUE(refused.done() && !*refused);

  // The private session of this run names its server.
  PulseAudioAuthorization here(PulseAudioAuthorization::Environment::current());
  Awaiting<bool> granted(here.requestAccess());
  EXPECT_TRUE(granted.done() && *granted);
}
