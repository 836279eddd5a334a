#include "DeliveryDesk.h"
#include "Support/BuildPaths.h"

#include <cstdlib>

#include <gtest/gtest.h>

namespace murmel::test {

namespace {

/// A window with one part, by a toolkit that tells of its parts. The first of the desktop that does so starts
/// the bus on which that is done.
class WindowWithField {
 public:
  WindowWithField(const std::string& toolkit, const std::string& kind)
      : process_({"env", "-u", "NO_AT_BRIDGE", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1", "/usr/bin/python3",
                  sourceFolder() + "/Tests/EndToEnd/Delivery/field.py", toolkit, kind}) {}
  bool isInFront(DeliveryDesk& desk) const {
    const auto front = desk.workspace().frontmostApplication();
    return front && front->client.processIdentifier == process_.identifier();
  }

  static bool isInstalled(const std::string& toolkit) {
    const auto imports = toolkit == "qt5" ? std::string("import PyQt5.QtWidgets")
                                          : "import gi; gi.require_version(\"Gtk\", \"" + toolkit.substr(3) +
                                                ".0\"); from gi.repository import Gtk";
    return std::system(("/usr/bin/python3 -c '" + imports + "' 2>/dev/null").c_str()) == 0;
  }

 private:
  ApplicationProcess process_;
};

}  // namespace

// First: the bus does not run yet.
TEST(DeliveryToFields, APasswordFieldOfQtIsSeenThoughTheBusComesLater) {
  if (!WindowWithField::isInstalled("qt5")) GTEST_SKIP() << "PyQt5 is not installed";
  const WindowWithField before("qt5", "password");
  DeliveryDesk desk;
  ASSERT_TRUE(desk.waitUntil([&] { return before.isInFront(desk); }));
  EXPECT_FALSE(desk.field.canTell());
  std::system("gdbus call --session -d org.a11y.Bus -o /org/a11y/bus -m org.a11y.Bus.GetAddress >/dev/null");
  ASSERT_TRUE(desk.waitUntil([&] {
    return desk.loop.await(desk.field.kind(*desk.workspace().frontmostApplication())) ==
           FocusedFieldKind::hidden;
  }));
  desk.begin();
  EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::copiedFallback);
  EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::secureInput);
}

TEST(DeliveryToFields, APasswordFieldGetsNothingWheneverItGotTheFocus) {
  int tried = 0;
  for (const std::string toolkit : {"gtk3", "gtk4"}) {
    if (!WindowWithField::isInstalled(toolkit)) continue;
    SCOPED_TRACE(toolkit);
    ++tried;
    const WindowWithField before(toolkit, "password");
    // Murmel comes when the field has had the focus for a while, and the bus runs.
    DeliveryDesk desk;
    ASSERT_TRUE(desk.waitUntil([&] { return before.isInFront(desk) && desk.field.canTell(); }));
    const auto kind = [&] {
      return desk.loop.await(desk.field.kind(*desk.workspace().frontmostApplication()));
    };
    ASSERT_TRUE(desk.waitUntil([&] { return kind() == FocusedFieldKind::hidden; }));
    for (const auto* dictation : {"first", "second"}) {
      SCOPED_TRACE(dictation);
      desk.begin();
      EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::copiedFallback);
      EXPECT_EQ(desk.service->lastBlock(), LiveInsertionBlock::secureInput);
      desk.service->endDictationSession();
    }

    const WindowWithField entry(toolkit, "entry");
    ASSERT_TRUE(desk.waitUntil([&] { return entry.isInFront(desk) && kind() == FocusedFieldKind::text; }));
    desk.begin();
    EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::insertionSent);
    desk.service->endDictationSession();
    ASSERT_TRUE(desk.waitUntilSettled());
    EXPECT_EQ(desk.settled.back(), PasteSettlement::clipboardRestored);

    const WindowWithField after(toolkit, "password");
    ASSERT_TRUE(desk.waitUntil([&] { return after.isInFront(desk) && kind() == FocusedFieldKind::hidden; }));
    desk.begin();
    EXPECT_EQ(desk.deliver("dictated"), TextDeliveryResult::copiedFallback);
    desk.service->endDictationSession();

    const WindowWithField button(toolkit, "button");
    EXPECT_TRUE(desk.waitUntil([&] { return button.isInFront(desk) && kind() == FocusedFieldKind::none; }));
  }
  if (tried == 0) GTEST_SKIP() << "no toolkit is installed";
}

}  // namespace murmel::test
