#include "Foundation/Async/Timers.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Shell/AppDelegate.h"
#include "Shell/AutomaticPasteRelaunch.h"
#include "Shell/Checks/CheckRunner.h"
#include "Shell/Checks/Checks.h"
#include "Shell/IntelCommandTarget.h"
#include "Shell/InterruptSignal.h"
#include "Shell/LaunchRole.h"
#include "Shell/StartReplies.h"
#include "Support/Testing.h"

#include <csignal>

#include <fmt/core.h>
#include <pthread.h>

namespace {

/// The role in words, so that a table can name it.
std::string roleOf(const Strings& arguments) {
  const auto role = launchRole(arguments, "Murmel 1.2 (3)");
  struct Describe {
    std::string operator()(const DesktopRole& desktop) const {
      constexpr std::array names{"desktop", "launch test", "reopen test"};
      return names[static_cast<std::size_t>(desktop.selfTest)];
    }
    std::string operator()(const ModelDownloadSmokeRole&) const { return "download test"; }
    std::string operator()(const TranscribeRole& transcribe) const {
      std::string text = transcribe.realTime ? "transcribe slowly" : "transcribe";
      if (transcribe.live) text += " live";
      if (transcribe.speech.refine) text += " refined";
      if (transcribe.speech.language) text += " in " + *transcribe.speech.language;
      for (const auto& file : transcribe.files) text += " " + file.string();
      return text;
    }
    std::string operator()(const ListenRole& listen) const {
      std::string text = listen.form == TranscriptForm::json ? "listen json" : "listen";
      if (listen.untilSilence) text += fmt::format(" until {}", *listen.untilSilence);
      return text;
    }
    std::string operator()(const RemoteCommandRole& remote) const {
      return std::string(rawValue(remote.command));
    }
    std::string operator()(const ModelsRole& models) const {
      std::string text = "models";
      for (const auto& argument : models.arguments) text += " " + argument;
      return text;
    }
    std::string operator()(const UpdateRole& update) const { return update.installs ? "update" : "look"; }
    std::string operator()(const KeptDataRole& kept) const {
      return kept.data == KeptDataRole::Data::settings ? "settings file " + kept.arguments.front() : "kept";
    }
    std::string operator()(const StatusRole& status) const {
      return status.json ? "status as JSON" : "status";
    }
    std::string operator()(const DoctorRole& doctor) const {
      return doctor.json ? "doctor as JSON" : "doctor";
    }
    std::string operator()(const MessageRole& message) const {
      return "exit " + std::to_string(message.exitStatus);
    }
  };
  return std::visit(Describe{}, role);
}

class FakeLaunchActions final : public ApplicationLaunchActions {
 public:
  void applyDockIconPreference() override { calls.emplace_back("dock"); }
  void refreshServices() override { calls.emplace_back("refresh"); }
  [[nodiscard]] bool requiresSetupWindow() const override { return needsSetup; }
  void openSetupWindow() override { calls.emplace_back("setup"); }
  void reopen() override { calls.emplace_back("reopen"); }
  [[nodiscard]] bool isMainWindowVisible() const override { return --looksUntilVisible < 0; }
  void terminate(int exitStatus) override { exits.push_back(exitStatus); }

  Strings calls;
  std::vector<int> exits;
  bool needsSetup = true;
  mutable int looksUntilVisible = 0;
};

class FakeAlerts final : public AlertPresenter {
 public:
  void show(Alert alert, std::function<void(bool)> answer) override {
    shown.push_back(std::move(alert));
    pending = std::move(answer);
  }
  std::vector<Alert> shown;
  std::function<void(bool)> pending;
};

class FakeRelauncher final : public ApplicationRelauncher {
 public:
  void openNewInstance(std::function<void(std::expected<void, std::string>)> done) override {
    ++opened;
    done(result);
  }
  void terminate() override { ++terminated; }
  std::expected<void, std::string> result;
  int opened = 0;
  int terminated = 0;
};

Task<CheckResult> works() {
  co_return CheckResult{CheckState::works, "fine"};
}
Task<CheckResult> never(Executor& executor) {
  auto waiting = sleepFor(executor, 24h);
  co_await waiting;
  co_return CheckResult{};
}

}  // namespace

TEST(LaunchRole, FollowsTheArguments) {
  const std::vector<std::pair<Strings, std::string>> rows{
      {{}, "desktop"},
      {{"--mrm-release-launch-smoke"}, "launch test"},
      {{"--mrm-dock-reopen-smoke"}, "reopen test"},
      {{"--mrm-model-download-smoke"}, "download test"},
      {{"--unknown-to-us", "--mrm-model-download-smoke"}, "download test"},
      {{"transcribe", "a.wav", "b c.wav"}, "transcribe a.wav b c.wav"},
      {{"transcribe", "--real-time", "a.wav"}, "transcribe slowly a.wav"},
      {{"transcribe", "--live", "--refine", "--language", "de", "a.wav"},
       "transcribe live refined in de a.wav"},
      {{"transcribe"}, "exit 2"},
      {{"transcribe", "--srt", "a.wav", "b.wav"}, "exit 2"},
      {{"listen"}, "listen"},
      {{"listen", "--json", "--until-silence", "800ms"}, "listen json until 0.8"},
      {{"listen", "--until-silence", "soon"}, "exit 2"},
      {{"toggle"}, "MRM.Intel.ToggleDictation"},
      {{"start"}, "MRM.Intel.StartDictation"},
      {{"stop"}, "MRM.Intel.StopDictation"},
      {{"copy-last"}, "MRM.Intel.CopyLastTranscript"},
      {{"settings"}, "MRM.Intel.OpenSettings"},
      {{"setup"}, "MRM.Intel.OpenSetup"},
      {{"quit"}, "MRM.Intel.Quit"},
      {{"doctor", "--json"}, "doctor as JSON"},
      {{"status"}, "status"},
      {{"models", "download", "parakeet"}, "models download parakeet"},
      {{"update"}, "look"},
      {{"update", "check"}, "look"},
      {{"update", "install"}, "update"},
      {{"settings", "list", "--json"}, "settings file list"},
      {{"history", "show", "1", "--json"}, "kept"},
      {{"--version"}, "exit 0"},
      {{"--help"}, "exit 0"},
      {{"--typo"}, "exit 2"},
      {{"toggel"}, "exit 2"},
      {{"toggle", "stop"}, "exit 2"},
  };
  for (const auto& [arguments, expected] : rows) {
    EXPECT_EQ(roleOf(arguments), expected) << ::testing::PrintToString(arguments);
  }
  EXPECT_TRUE(
      contains(std::get<MessageRole>(launchRole({"--version"}, "Murmel 1.2 (3)")).text, "Murmel 1.2 (3)"));
}

TEST(IntelCommands, EveryCommandHasOneActionAndReachesWhoAnswersIt) {
  std::set<std::string_view> actions;
  for (const auto command : allCases<IntelCommand>()) {
    EXPECT_EQ(commandForAction(actionName(command)), command);
    actions.insert(actionName(command));
  }
  EXPECT_EQ(actions.size(), allCases<IntelCommand>().size());

  IntelCommandTarget target;
  const auto answerTo = [&target](IntelCommand command) {
    std::string answer;
    target.post(command, [&](const CommandOutcome& outcome) { answer = outcome ? "done" : outcome.error(); });
    return answer;
  };
  int toggled = 0;
  {
    const auto observer = target.answer(IntelCommand::toggleDictation, [&]() -> CommandOutcome {
      ++toggled;
      return std::unexpected("not now");
    });
    EXPECT_EQ(answerTo(IntelCommand::toggleDictation), "not now");
    EXPECT_NE(answerTo(IntelCommand::openSettings), "done") << "nobody is there to do it";
  }
  EXPECT_EQ(answerTo(IntelCommand::toggleDictation), "Murmel cannot do that now.");
  EXPECT_EQ(toggled, 1);
}

TEST(CheckRunner, TriesEachForABoundedTimeAndLeadsToTheCure) {
  ManualExecutor executor;
  int cured = 0;
  CheckRunner checks(executor, {
                                   {"good", "Good", &works},
                                   {.identifier = "stuck",
                                    .name = "Stuck",
                                    .attempt = [&executor] { return never(executor); },
                                    .cureTitle = "Pull",
                                    .cure = [&cured] { ++cured; },
                                    .hanging = CheckState::broken},
                               });
  checks.run();
  EXPECT_EQ(checks.reports()[0].state, CheckState::works);
  EXPECT_EQ(checks.reports()[1].state, CheckState::pending);
  executor.advance(CheckRunner::limit);
  EXPECT_FALSE(checks.isRunning());
  EXPECT_EQ(checks.reports()[1].state, CheckState::broken);
  EXPECT_EQ(checks.reports()[1].cure, "Pull");
  checks.cure("stuck");
  EXPECT_EQ(cured, 1);
  checks.run();
  EXPECT_EQ(checks.reports()[1].state, CheckState::pending) << "again";
}

TEST(StartReplies, ComeWhenTheMicrophoneIsOpenOrTheStartHasFailed) {
  ManualExecutor executor;
  Signal<const DictationState&> states;
  StartReplies replies(executor, states);
  Strings answers;
  const auto keep = [&](const CommandOutcome& outcome) {
    answers.push_back(outcome ? "done" : outcome.error());
  };
  replies.await(keep);
  states.emit(DictationState::Case::ready);
  EXPECT_EQ(answers, Strings{});
  states.emit(DictationState::Case::listening);
  replies.await(keep);
  states.emit(DictationState::error("no microphone"));
  replies.await(keep);
  executor.advance(StartReplies::limit);
  states.emit(DictationState::error("later"));
  EXPECT_EQ(answers, (Strings{"done", "no microphone", "done"}));
}

TEST(InterruptSignal, TellsTheFirstRequestToEndButNoHangUpThatIsIgnored) {
  for (const bool isIgnored : {false, true}) {
    const auto before = std::signal(SIGHUP, isIgnored ? SIG_IGN : SIG_DFL);
    const auto ending = endingSignals();
    std::signal(SIGHUP, before);
    EXPECT_EQ(::sigismember(&ending, SIGHUP), isIgnored ? 0 : 1) << "as by nohup";
  }
  for (const int signal : {SIGINT, SIGTERM}) {
    ManualExecutor executor;
    InterruptSignal interrupts(executor);
    int told = 0;
    interrupts.setHandler([&told] { ++told; });
    ::pthread_kill(::pthread_self(), signal);
    EXPECT_TRUE(executor.waitUntil([&told] { return told == 1; }));
  }
}

TEST(AppDelegate, LaunchStepsComeInTheirOrder) {
  struct Row {
    LaunchSelfTest selfTest;
    bool needsSetup;
    Strings calls;
    std::vector<int> exits;
  };
  for (const auto& row : std::vector<Row>{
           {LaunchSelfTest::none, true, {"dock", "refresh", "setup"}, {}},
           {LaunchSelfTest::none, false, {"dock", "refresh"}, {}},
           {LaunchSelfTest::releaseLaunch, true, {}, {0}},
           {LaunchSelfTest::dockReopen, true, {"refresh", "reopen"}, {0}},
       }) {
    ManualExecutor executor;
    FakeLaunchActions actions;
    actions.needsSetup = row.needsSetup;
    AppDelegate delegate(executor, actions, row.selfTest);
    delegate.applicationDidFinishLaunching();
    EXPECT_EQ(actions.exits, std::vector<int>{}) << "windows and the end come from the main queue";
    executor.runUntilIdle();
    EXPECT_EQ(actions.calls, row.calls);
    EXPECT_EQ(actions.exits, row.exits);
  }
}

TEST(AppDelegate, TheReopenTestWaitsForTheWindowAndGivesUpInTheEnd) {
  ManualExecutor executor;
  FakeLaunchActions late;
  late.looksUntilVisible = 10;
  AppDelegate patient(executor, late, LaunchSelfTest::dockReopen);
  patient.applicationDidFinishLaunching();
  executor.advance(900ms);
  EXPECT_EQ(late.exits, std::vector<int>{});
  executor.advance(200ms);
  EXPECT_EQ(late.exits, std::vector<int>{0});

  FakeLaunchActions never;
  never.looksUntilVisible = 1'000'000;
  AppDelegate bounded(executor, never, LaunchSelfTest::dockReopen);
  bounded.applicationDidFinishLaunching();
  executor.advance(1min);
  EXPECT_EQ(never.exits, std::vector<int>{1});
  EXPECT_EQ(executor.pendingTimers(), 0U);
}

TEST(AutomaticPasteRelaunch, OffersOnceAtATimeAndReopensOnlyOnRequest) {
  FakeAlerts alerts;
  FakeRelauncher relauncher;
  AutomaticPasteRelaunch relaunch(alerts, relauncher, "Murmel");
  relaunch.offerAutomaticPasteRelaunch();
  relaunch.offerAutomaticPasteRelaunch();
  ASSERT_EQ(alerts.shown.size(), 1U);
  EXPECT_EQ(alerts.shown[0].title, "Finish enabling Automatic Paste");
  EXPECT_TRUE(contains(alerts.shown[0].text, "a fresh Murmel process"));
  alerts.pending(false);
  EXPECT_EQ(relauncher.opened, 0);

  relaunch.offerAutomaticPasteRelaunch();
  ASSERT_EQ(alerts.shown.size(), 2U) << "after an answer it may be offered again";
  alerts.pending(true);
  EXPECT_EQ(relauncher.terminated, 1);

  relauncher.result = std::unexpected("No such file");
  relaunch.offerAutomaticPasteRelaunch();
  alerts.pending(true);
  EXPECT_EQ(alerts.shown.back().title, "Murmel could not reopen");
  EXPECT_EQ(alerts.shown.back().text, "No such file");
  EXPECT_EQ(relauncher.terminated, 1) << "it keeps running";
}

TEST(Checks, TellHowFarSpeechStaysOutOfTheSwap) {
  const std::string titles = "Filename  Type  Size  Used  Priority\n";
  const auto kind = [](std::string_view device) { return device == "dm-1" ? "CRYPT-PLAIN-swap" : "LVM-abc"; };
  constexpr std::uint64_t little = 64 << 10;
  EXPECT_EQ(
      swapResult(titles + "/dev/zram0 partition 1 0 100\n/dev/dm-1 partition 1 0 -2\n", kind, little).state,
      CheckState::works);
  const auto onDisk = titles + "/dev/dm-0 partition 1 0 -2\n";
  EXPECT_EQ(swapResult(onDisk, kind, 8 << 20).state, CheckState::works);
  const auto limited = swapResult(onDisk, kind, little);
  EXPECT_EQ(limited.state, CheckState::limited);
  EXPECT_NE(limited.sentence.find("0.1 MB can be kept out of /dev/dm-0"), std::string::npos);
}
