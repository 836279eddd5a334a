#include "DictationDesk.h"

constexpr int refused = 1;
constexpr int notRunning = 3;

TEST_F(DictationDesk, CommandsDriveARunningMurmelAndSayWhatBecameOfThem) {
  EXPECT_EQ(command("toggle"), notRunning);
  EXPECT_EQ(command("status --json"), notRunning);
  start();
  const auto editor = openEditor("text");
  EXPECT_EQ(command("copy-last"), refused);
  EXPECT_EQ(command("stop"), refused) << "nothing is recorded";
  EXPECT_EQ(command("start"), 0);
  EXPECT_TRUE(succeeds(isRecording)) << "answered when the microphone was open";
  EXPECT_EQ(command("start"), refused) << "it is on already";
  say(tenOfClubs);
  EXPECT_EQ(command("stop"), 0);
  ASSERT_TRUE(waitForText(tenOfClubs.word, "text")) << murmel->log();
  ASSERT_TRUE(waitForClipboard("old clipboard"));
  EXPECT_EQ(command("copy-last"), 0);
  EXPECT_TRUE(waitForClipboard(tenOfClubs.word));
  ClipboardReader reader("CLIPBOARD");
  const auto hint = reader.read("x-kde-passwordManagerHint");
  EXPECT_TRUE(hint && hint->data == "secret") << "clipboard managers are asked to forget it";
  EXPECT_EQ(command("no-such-command"), 2);
  quit();
  EXPECT_EQ(command("quit"), notRunning);
}

TEST_F(DictationDesk, NoWordGoesOverTheBusOrStandsInAnArgument) {
  start();
  const auto editor = openEditor("text");
  // Everybody's arguments, again and again, and everything that is said on the bus.
  const auto watched = file("watched").string();
  ApplicationProcess bus({"sh", "-c", "exec dbus-monitor --session >" + watched + ".bus"});
  ApplicationProcess arguments(
      {"sh", "-c", "while :; do cat /proc/[0-9]*/cmdline; done >" + watched + ".arguments 2>/dev/null"});
  ASSERT_TRUE(waitUntilCommand("grep -q NameAcquired " + watched + ".bus"));
  EXPECT_EQ(command("toggle"), 0);
  say(eightOfSpadesAndMore);
  const std::string murmelIs = outputOf(std::string(MURMEL_EXECUTABLE) + " status --json");
  EXPECT_NE(murmelIs.find(R"("state":"listening")"), std::string::npos) << murmelIs;
  EXPECT_EQ(murmelIs.find(R"("elapsed":0,)"), std::string::npos) << murmelIs;
  EXPECT_NE(murmelIs.find(R"("engine":"PocketSphinx, US English")"), std::string::npos) << murmelIs;
  EXPECT_EQ(command("toggle"), 0);
  ASSERT_TRUE(waitForText(eightOfSpadesAndMore.word, "text")) << murmel->log();
  ASSERT_TRUE(waitForClipboard("old clipboard"));
  EXPECT_EQ(command("copy-last"), 0);
  ASSERT_TRUE(waitUntilCommand("grep -q '\"delivered\"' " + watched + ".bus"))
      << "panels are told of changes";
  for (const char* what : {".bus", ".arguments"}) {
    EXPECT_EQ(contentsOf(watched + what).find(eightOfSpadesAndMore.word), std::string::npos) << what;
  }
}

TEST_F(DictationDesk, ASecondStartShowsTheFirstAlsoWhereThereIsNoBus) {
  start();
  EXPECT_FALSE(succeeds(settingsAreVisible));
  EXPECT_TRUE(succeeds(MURMEL_EXECUTABLE));
  EXPECT_TRUE(waitUntilCommand(settingsAreVisible)) << "the setup is done";
  const auto withoutBus = std::string("DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere ") + MURMEL_EXECUTABLE;
  EXPECT_FALSE(succeeds("timeout 20 " + withoutBus)) << "both would type";
  const auto socket = file("bus").string();
  const ApplicationProcess hangingBus({"python3", "-c",
                                       "import socket, time; s = socket.socket(socket.AF_UNIX); s.bind('" +
                                           socket + "'); s.listen(); time.sleep(60)"});
  ASSERT_TRUE(waitUntilCommand("test -S " + socket));
  const auto withHangingBus =
      "DBUS_SESSION_BUS_ADDRESS=unix:path=" + socket + " timeout 10 " + MURMEL_EXECUTABLE;
  EXPECT_EQ(outputOf(withHangingBus + " 2>/dev/null; echo $?"), "1") << "and soon";
  const auto other = installCopy();
  outputOf("sed -i 's/Murmel.Development/Murmel.Lite/' " + other + "/lib/murmel/Info.json");
  EXPECT_EQ(outputOf(other + "/bin/murmel 2>&1 || true"),
            "murmel: Another edition of Murmel is running (app.murmel.Murmel.Development). Quit it first.");
  EXPECT_FALSE(murmel->exitStatus());
  // One that hangs is not asked later for what its caller was told has failed.
  ::kill(murmel->identifier(), SIGSTOP);
  EXPECT_EQ(command("toggle"), refused);
  ::kill(murmel->identifier(), SIGCONT);
  EXPECT_EQ(command("copy-last"), refused) << "it answers again";
  EXPECT_FALSE(succeeds(isRecording));
}

TEST_F(DictationDesk, QuitAndStartLeavesOneRunning) {
  for (int round = 0; round < 3; ++round) {
    start();
    ASSERT_EQ(command("quit"), 0);
    EXPECT_TRUE(waitUntil([&] { return murmel->exitStatus().has_value(); }));
  }
  start();
  ::kill(murmel->identifier(), SIGTERM);
  ChildProgram next({MURMEL_EXECUTABLE}, file("next.log"));
  EXPECT_TRUE(waitUntil([&] { return murmel->exitStatus().has_value(); }));
  EXPECT_TRUE(waitUntilCommand(std::string(MURMEL_EXECUTABLE) + " status"));
  EXPECT_FALSE(next.exitStatus()) << next.log();
}

TEST_F(DictationDesk, SaysWhyItCannotStart) {
  for (const auto* environment : {"-u DISPLAY", "DISPLAY=", "DISPLAY=:4711", "DISPLAY=nonsense",
                                  "-u DISPLAY WAYLAND_DISPLAY=wayland-77", "-u HOME -u XDG_DATA_HOME"}) {
    const auto run = std::string("env -u QT_QPA_PLATFORM ") + environment + " " + MURMEL_EXECUTABLE;
    EXPECT_EQ(outputOf(run + " 2>&1 >/dev/null; echo $?").substr(0, 8), "murmel: ") << environment;
    EXPECT_EQ(outputOf(run + " 2>/dev/null; echo $?"), "1") << environment;
    EXPECT_TRUE(succeeds(run + " --version")) << environment;
  }
}

TEST_F(DictationDesk, KeepsItsMemoryToItselfAndSurvivesABrokenPipe) {
  start();
  const auto process = "/proc/" + std::to_string(murmel->identifier());
  EXPECT_TRUE(succeeds("grep -q 'Max core file size *0 ' " + process + "/limits"));
  constexpr unsigned long long brokenPipe = 1ULL << (SIGPIPE - 1);
  const auto ignored = outputOf("sed -n 's/^SigIgn:.//p' " + process + "/status");
  EXPECT_NE(std::stoull(ignored, nullptr, 16) & brokenPipe, 0U);
}

TEST_F(DictationDesk, PastesTheLastDictationOnceMore) {
  start();
  EXPECT_EQ(command("paste-last"), refused);
  const auto editor = openEditor("text");
  dictate(tenOfClubs);
  ASSERT_TRUE(waitUntil([&] { return !textIn("text").empty(); })) << murmel->log();
  ASSERT_TRUE(waitUntilCommand(std::string("! ") + pillIsVisible));
  const auto text = textIn("text");  // whatever was heard
  EXPECT_EQ(command("paste-last"), 0);
  EXPECT_TRUE(waitUntil([&] { return textIn("text") == text + text; })) << textIn("text");
}

TEST_F(DictationDesk, TheSelfTestsEndByThemselvesAndWriteNothing) {
  std::filesystem::remove(configuration() / "defaults.json");
  for (const auto* flag : {"--mrm-release-launch-smoke", "--mrm-dock-reopen-smoke"}) {
    EXPECT_TRUE(succeeds(std::string(MURMEL_EXECUTABLE) + " " + flag)) << flag;
  }
  EXPECT_TRUE(std::filesystem::is_empty(configuration()));
  const auto nowhere = std::string("env HOME=/dev/null XDG_DATA_HOME=/dev/null XDG_RUNTIME_DIR=/dev/null ");
  EXPECT_EQ(outputOf(nowhere + MURMEL_EXECUTABLE + " --mrm-release-launch-smoke 2>/dev/null; echo $?"), "1");
}
