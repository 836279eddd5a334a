#include "Foundation/Async/Scope.h"
#include "Platform/Fake/FakeAudioInput.h"
#include "Platform/Fake/FakeCancelKey.h"
#include "Platform/Fake/FakeKeyEventTap.h"
#include "Platform/Fake/FakeMicrophoneAuthorization.h"
#include "Platform/Fake/FakeProcessLauncher.h"
#include "Platform/Fake/FakeProcessMemory.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Platform/Fake/FakeSessionGuard.h"
#include "Platform/Fake/FakeSoundPlayer.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Linux/Portal/Either.h"
#include "Shell/DeliveryServices.h"
#include "Shell/PermissionService.h"
#include "Shell/SettingsReactions.h"
#include "Shell/ShortcutWiring.h"
#include "Shell/StorageHealth.h"
#include "Shell/StorageServices.h"
#include "Shortcut/ShortcutChoice.h"
#include "Storage/KeychainEncryptionKeyStore.h"
#include "Support/Awaiting.h"
#include "Support/DictationFakes.h"
#include "Support/FileBytes.h"
#include "Support/InMemoryDefaultsStore.h"
#include "Support/TemporaryFolder.h"
#include "Unit/Delivery/DeliveryHarness.h"

#include <future>

namespace {

/// The settings, and what hangs on them.
class SettingsWiring : public ::testing::Test {
 protected:
  ManualExecutor executor;
  TemporaryFolder folder;
  PosixFileSystem files;
  FakeSecretStore secrets;
  KeychainEncryptionKeyStore keys{secrets, "app.murmel.Test.vocabulary"};
  InMemoryDefaultsStore defaults;
  SerialQueue queue{executor, "vocabulary"};
  SettingsRepository settings{{.defaults = defaults,
                               .executor = executor,
                               .queue = queue,
                               .vocabularyFile = vocabularyFile(files, keys, folder.path())}};
};

/// A desktop of fakes with an editor in front, and the delivery that is made of it.
class DeliveryWiring : public SettingsWiring {
 protected:
  DeliveryWiring() {
    workspace.bringToFront(editor);
    clipboard.writeByAnother(plainText("old"));
    executor.advance(1s);
    keyboard.onPosted([this](PasteChord) { clipboard.readBy(editor.client, "UTF8_STRING"); });
  }
  TextDeliveryResult deliver() {
    if (!delivery) {
      ApplicationFolders folders;
      folders.configuration = folder.path();
      const auto installation = Installation::from(InformationDictionary(), folders, Environment());
      delivery.emplace(ProcessServices{executor, executor, log, launcher, memory}, installation, desktop,
                       settings);
    }
    delivery->insertion.beginDictationSession();
    Awaiting delivering(delivery->insertion.insertOrCopy(SpokenText("words"), false));
    for (int step = 0; step < 1'000 && !delivering.done(); ++step) executor.advance(10ms);
    executor.advance(10s);
    return *delivering;
  }

  MemoryLogSink log;
  FakeProcessLauncher launcher;
  FakeProcessMemory memory;
  FakeAudioInput microphone{executor};
  FakeMicrophoneAuthorization authorization;
  FakeSoundPlayer sounds;
  FakeKeyEventTap taps;
  KeyTapShortcutSource shortcuts{taps};
  FakeWorkspace workspace{executor};
  FakeKeyboardPoster keyboard{executor, workspace};
  FakeSecureInput secureInput;
  FakeFocusedField field;
  FakeSessionGuard session;
  FakeCancelKey cancelKey;
  FakePasteboard clipboard{executor, executor};
  DesktopServices desktop{microphone,  authorization, sounds,  shortcuts, workspace, keyboard,
                          secureInput, field,         session, cancelKey, clipboard};
  RunningApplication editor = application(100, "Editor");
  std::optional<DeliveryServices> delivery;
};

TEST_F(DeliveryWiring, FollowsTheUsersChoiceAboutThePreviousClipboard) {
  deliver();
  EXPECT_EQ(clipboard.contents(), plainText("old"));
  settings.setRestorePreviousClipboard(false);
  deliver();
  EXPECT_NE(clipboard.contents(), plainText("old"));
  delivery.reset();
  clipboard.writeByAnother(plainText("old"));
  deliver();
  EXPECT_NE(clipboard.contents(), plainText("old")) << "after a start, too";
}

TEST_F(DeliveryWiring, PastesNothingIntoAPasswordField) {
  field.setKind(FocusedFieldKind::hidden);
  EXPECT_EQ(deliver(), TextDeliveryResult::copiedFallback);
  EXPECT_TRUE(keyboard.posted().empty());
}

TEST_F(DeliveryWiring, PastesWithTheKeysThatTheUserHasWrittenDown) {
  std::filesystem::create_directory(folder.path() / "MRM");
  writeFile(folder.path() / "MRM" / "paste-keys.conf", "Editor = Shift+Insert");
  deliver();
  EXPECT_EQ(keyboard.posted(), std::vector{PasteChord::shiftInsert});
}

TEST_F(DeliveryWiring, PermissionsTellWhenOneOfThemHasChanged) {
  PermissionService permissions(desktop, [] { return configuration(ShortcutChoice::optionKey); });
  EXPECT_EQ(permissions.current(), (Permissions{MicrophonePermissionPhase::authorized, true, true}));
  int changes = 0;
  int ofTheShortcut = 0;
  const auto any =
      permissions.didChange().subscribe([&](const Permissions&, const Permissions&) { ++changes; });
  const auto shortcut = permissions.inputMonitoringDidChange().subscribe([&] { ++ofTheShortcut; });
  keyboard.forbid();
  permissions.refresh();
  permissions.refresh();
  EXPECT_FALSE(permissions.current().automaticPaste);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(ofTheShortcut, 0);
  taps.setPermission(false);
  shortcuts.permissionDidChange().emit();
  EXPECT_FALSE(permissions.current().shortcut);
  EXPECT_EQ(ofTheShortcut, 1);
}

TEST_F(SettingsWiring, KeepsTheChosenRefinerLoadedOnlyWhileFormattingIsOn) {
  FakeRefinementSource refinement;
  int shutdowns = 0;
  TemporaryFolder store;
  SmartModelManager models(executor, std::make_shared<ModelInventory>(store.path()));
  const RefinerWarmth warmth(settings, models, refinement, [&] { ++shutdowns; });
  settings.setSmartFormatting(true);
  EXPECT_EQ(refinement.warmUps, 1);
  settings.setLanguageMode(DictationLanguageMode::single);
  EXPECT_EQ(refinement.warmUps, 2) << "another language may need another model";
  settings.setSmartFormatting(false);
  EXPECT_EQ(shutdowns, 1);
}

TEST_F(SettingsWiring, WordsWaitInMemoryUntilTheKeyRingIsUnlocked) {
  secrets.setLocked(true);
  settings.setHistoryEnabled(true);
  HistoryRepository history(executor, queue, historyFile(files, keys, folder.path()));
  std::atomic<int> asked = 0;
  std::promise<void> answer;
  const auto ask = [&, answered = answer.get_future().share()] {
    ++asked;
    answered.wait();
    return secrets.unlock();
  };
  std::optional<StorageHealth> health(std::in_place, executor, settings, history, ask);
  HistoryEntry entry;
  entry.id = Uuid::random();
  entry.text = SpokenText("words");
  history.add(entry);
  ASSERT_TRUE(executor.waitUntil([&] { return health->notice().has_value(); }));
  EXPECT_TRUE(health->notice()->canUnlock);
  health->unlock();
  health->unlock();  // the user is being asked already
  // Nobody waits for the user: one health goes meanwhile, and its answer reaches nobody.
  StorageHealth later(executor, settings, history, ask);
  later.unlock();
  EXPECT_TRUE(executor.waitUntil([&] { return asked == 2; }));
  health.reset();
  answer.set_value();
  EXPECT_TRUE(executor.waitUntil([&] { return !later.notice() && history.isSettled(); }));
  EXPECT_EQ(asked, 2);
  const HistoryRepository stored(executor, queue, historyFile(files, keys, folder.path()));
  EXPECT_TRUE(executor.waitUntil([&] { return stored.entries().size() == 1; }));
}

/// A compositor that watches one shortcut.
class FakeCompositor final : public ShortcutSource {
 public:
  struct Installed final : InstalledShortcut {
    explicit Installed(FakeCompositor& owner) : compositor(owner) {}
    ~Installed() override { compositor.handler = nullptr; }
    bool enable() override { return false; }
    FakeCompositor& compositor;
  };
  [[nodiscard]] ListenEventAccess permission(const ShortcutRequest& request) override {
    return {request.kind == ShortcutRequest::Kind::key, "only keys"};
  }
  [[nodiscard]] std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& request,
                                                           Handler told) override {
    requests.push_back(request.keyCode);
    handler = std::move(told);
    return std::make_unique<Installed>(*this);
  }
  [[nodiscard]] bool hearsEveryKey() const override { return false; }
  [[nodiscard]] Signal<>& permissionDidChange() override { return changed; }
  void resync() override { ++resyncs; }

  std::vector<VirtualKeyCode> requests;
  Handler handler;
  Signal<> changed;
  int resyncs = 0;
};

TEST(ShortcutWiring, TellsACompositorOfEachShortcutAndHearsWhatItSays) {
  ManualExecutor executor;
  MemoryLogSink log;
  FakeProcessLauncher launcher;
  FakeProcessMemory memory;
  FakeCompositor compositor;
  FakeLocalKeyMonitor localKeys;
  Signal<> shortcutDidChange, permissionDidChange, becameActive, woke;
  auto shortcut = configuration(ShortcutChoice::optionSpace);
  std::string calls;
  const ShortcutWiring wiring(
      {executor, executor, log, launcher, memory}, compositor, localKeys,
      {shortcutDidChange, permissionDidChange, becameActive}, woke,
      {[&] { calls += "press "; }, [&] { calls += "release "; }, [&] { calls += "toggle "; }},
      [&] { return shortcut; });
  for (const auto activity :
       {ShortcutActivity::pressed, ShortcutActivity::released, ShortcutActivity::toggled}) {
    compositor.handler(activity);
  }
  executor.runUntilIdle();
  EXPECT_EQ(calls, "press release toggle ");

  shortcut = configuration(ShortcutChoice::commandShiftD);
  shortcutDidChange.emit();
  executor.runUntilIdle();
  EXPECT_EQ(compositor.requests, (std::vector{virtualKey::space, virtualKey::d}));
  compositor.handler(ShortcutActivity::lost);
  executor.advance(1s);
  EXPECT_EQ(compositor.requests.size(), 3U) << "asked for it once more";

  shortcut = configuration(ShortcutChoice::optionKey);
  shortcutDidChange.emit();
  executor.runUntilIdle();
  EXPECT_FALSE(compositor.handler) << "it cannot watch this one, and must not go on with the old one";
  EXPECT_EQ(compositor.resyncs, 0);
  woke.emit();
  EXPECT_EQ(compositor.resyncs, 1);
}

}  // namespace

TEST(StorageWiring, DeletesWhatIsDueWhileNothingElseHappensAndWhenLessIsKept) {
  ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);  // the user's own key ring is left alone
  const TemporaryFolder folder;
  ManualExecutor executor;
  const auto information = informationOfThisBuild();
  ASSERT_TRUE(information);
  const ApplicationFolders folders{.executable = {},
                                   .resources = {},
                                   .configuration = folder.path(),
                                   .data = folder.path(),
                                   .temporary = folder.path()};
  StorageServices storage(
      executor, Installation::from(*information, folders, {}), [](SmartLocalModel) { return false; },
      nullptr);
  const auto keep = [&] {
    HistoryEntry entry;
    entry.id = Uuid::random();
    entry.createdAt = historyDate(executor.wallNow());
    storage.history.add(std::move(entry));
  };
  storage.settings.setHistoryRetention(HistoryRetention::fiveMinutes);
  storage.follow(executor, executor);
  keep();
  executor.advance(100s);
  keep();
  executor.advance(199s);
  EXPECT_EQ(storage.history.entries().size(), 2U);
  executor.advance(2s);
  EXPECT_EQ(storage.history.entries().size(), 1U);
  executor.advance(100s);
  EXPECT_EQ(storage.history.entries().size(), 0U);

  storage.settings.setHistoryRetention(HistoryRetention::forever);
  keep();
  executor.advance(24h);
  EXPECT_EQ(storage.history.entries().size(), 1U);
  storage.settings.setHistoryRetention(HistoryRetention::fiveMinutes);
  EXPECT_EQ(storage.history.entries().size(), 0U);
}

TEST(EitherRoad, TheFirstCountsForAsLongAsItIsThere) {
  ManualExecutor executor;
  bool isThere = true;
  auto* const first = new FakeWorkspace(executor);
  auto* const second = new FakeWorkspace(executor);
  EitherWorkspace workspace([&] { return isThere; }, std::unique_ptr<Workspace>(first),
                            std::unique_ptr<Workspace>(second));
  std::vector<pid_t> activated;
  const auto listening = workspace.onActivation(
      [&](const RunningApplication& each) { activated.push_back(each.client.processIdentifier); });
  first->bringToFront(application(10, "Editor"));
  second->bringToFront(application(11, "Editor"));
  executor.advance(1s);
  EXPECT_EQ(workspace.frontmostApplication()->client.processIdentifier, 10);
  isThere = false;
  second->bringToFront(application(21, "Editor"));
  executor.advance(1s);
  EXPECT_EQ(workspace.frontmostApplication()->client.processIdentifier, 21);
  EXPECT_EQ(activated, (std::vector<pid_t>{10, 21}));

  auto extension = std::make_unique<FakeKeyboardPoster>(executor, workspace);
  extension->hinder();
  EitherKeyboard keyboard(std::move(extension), std::make_unique<FakeKeyboardPoster>(executor, workspace));
  EXPECT_TRUE(keyboard.isHindered()) << "phrases while the shortcut is held would wait for it";
}
