// Fields that hide what is typed get nothing, whichever came first: the field, Murmel, or the bus on which
// programs tell of their parts.

#include "DeliveryDesk.h"
#include "Support/Testing.h"

namespace {

constexpr const char* switchOn =
    "gdbus call --session -d org.a11y.Bus -o /org/a11y/bus -m org.freedesktop.DBus.Properties.Set"
    " org.a11y.Status IsEnabled '<true>' >/dev/null";
/// The bus goes with the service that has started it.
constexpr const char* stopBus =
    "kill $(gdbus call --session -d org.freedesktop.DBus -o /org/freedesktop/DBus"
    " -m org.freedesktop.DBus.GetConnectionUnixProcessID org.a11y.Bus 2>/dev/null | tr -dc '0-9 ' |"
    " cut -d' ' -f2) 2>/dev/null";

/// What a run before has left in its profile is another first page.
constexpr const char* firefox = "exec firefox-esr --no-remote --profile $(mktemp -dp $HOME) $0";

struct Toolkit {
  const char* name;
  const char* needs;  ///< a command that fails where it is not installed
  std::vector<std::string> command;
};

const std::string fieldProgram = sourceFolder() + "/Tests/EndToEnd/Delivery/field.py";
const std::vector<Toolkit> toolkits{
    {"gtk3",
     "/usr/bin/python3 -c 'import gi; gi.require_version(\"Gtk\", \"3.0\")'",
     {"/usr/bin/python3", fieldProgram, "gtk3", "KIND"}},
    {"gtk4",
     "/usr/bin/python3 -c 'import gi; gi.require_version(\"Gtk\", \"4.0\")'",
     {"/usr/bin/python3", fieldProgram, "gtk4", "KIND"}},
    {"qt6", "true", {buildFolder() + "/tests/qt-editor", "--field", "KIND"}},
    {"firefox", "command -v firefox-esr", {"sh", "-c", firefox, "PAGE"}},
    // It tells of its pages only when it is told to.
    {"chromium",
     "command -v chromium",
     {"chromium", "--no-sandbox", "--no-first-run", "--hide-crash-restore-bubble",
      "--force-renderer-accessibility", "PAGE"}},
};

class Field {
 public:
  Field(const Toolkit& toolkit, const std::string& kind) : process_(commandFor(toolkit, kind)) {}

  bool isInFront(X11TargetDesk& desk) const {
    const auto front = desk.workspace().frontmostApplication();
    return front && front->client.processIdentifier == process_.identifier();
  }
  FocusedFieldKind kind(DeliveryDesk& desk) const {
    return isInFront(desk) ? desk.loop.await(desk.field.kind(*desk.workspace().frontmostApplication()))
                           : FocusedFieldKind::notTold;
  }

 private:
  static std::vector<std::string> commandFor(const Toolkit& toolkit, const std::string& kind) {
    const auto page = std::string(std::getenv("MURMEL_SESSION_DIRECTORY")) + "/" + kind + ".html";
    std::ofstream(page) << "<title>page</title>"
                        << (kind == "password" ? "<input type=password autofocus>"
                                               : "<textarea autofocus></textarea>");
    std::vector<std::string> command{"env", "-u", "NO_AT_BRIDGE"};
    for (const auto& argument : toolkit.command)
      command.push_back(argument == "KIND" ? kind : argument == "PAGE" ? "file://" + page : argument);
    return command;
  }

  ApplicationProcess process_;
};

class DeliveryToFields : public ::testing::TestWithParam<Toolkit> {
 protected:
  void SetUp() override {
    if (std::system((std::string(GetParam().needs) + " >/dev/null 2>&1").c_str()) != 0)
      GTEST_SKIP() << "it is not installed";
    std::system(stopBus);
  }

  static void expectNothingArrives(DeliveryDesk& desk, const Field& field) {
    ASSERT_TRUE(desk.waitUntil([&] { return field.kind(desk) == FocusedFieldKind::hidden; }));
    for (const auto* dictation : {"first", "second"}) {
      SCOPED_TRACE(dictation);
      desk.begin();
      EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::copiedFallback);
      EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::secureInput);
      desk.service->endDictationSession();
    }
  }
};

}  // namespace

TEST_P(DeliveryToFields, APasswordFieldThatHadTheKeyboardBeforeGetsNothing) {
  std::optional<Field> field;
  {
    X11TargetDesk before;
    field.emplace(GetParam(), "password");
    ASSERT_TRUE(before.waitUntil([&] { return field->isInFront(before); }));
    std::system(switchOn);
  }
  DeliveryDesk desk;
  expectNothingArrives(desk, *field);
}

TEST_P(DeliveryToFields, APasswordFieldGetsNothingThoughTheBusComesLast) {
  DeliveryDesk desk;
  ASSERT_TRUE(desk.waitUntil([&] { return desk.field.tellers() == FieldTellers::nobody; }));
  const Field field(GetParam(), "password");
  ASSERT_TRUE(desk.waitUntil([&] { return field.isInFront(desk); }));
  std::system(switchOn);
  expectNothingArrives(desk, field);
}

TEST_P(DeliveryToFields, AnEntryGetsTheTextAndAButtonIsSeen) {
  DeliveryDesk desk;
  const Field entry(GetParam(), "entry");
  ASSERT_TRUE(desk.waitUntil([&] { return entry.isInFront(desk); }));
  std::system(switchOn);
  ASSERT_TRUE(desk.waitUntil([&] { return entry.kind(desk) == FocusedFieldKind::text; }));
  desk.begin();
  EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::insertionSent);
  desk.service->endDictationSession();
  ASSERT_TRUE(desk.waitUntilSettled());
  EXPECT_EQ(desk.settled.back(), PasteSettlement::clipboardRestored);
  if (GetParam().command.back() == "PAGE") return;
  const Field button(GetParam(), "button");
  EXPECT_TRUE(desk.waitUntil([&] { return button.kind(desk) == FocusedFieldKind::none; }));
}

INSTANTIATE_TEST_SUITE_P(Toolkits, DeliveryToFields, ::testing::ValuesIn(toolkits),
                         [](const auto& tested) { return std::string(tested.param.name); });
