#include "GalleryData.h"
#include "Interface/Common/Form.h"
#include "Interface/Settings/SettingsWindow.h"
#include "Settings/SettingsKeys.h"
#include "Shortcut/ShortcutConflicts.h"
#include "Support/X11/WindowTests.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>
#include <QWheelEvent>

namespace {

class Windows : public ::testing::Test {
 protected:
  static QWidget* control(const QWidget& window, const QString& name) {
    for (auto* candidate : window.findChildren<QWidget*>()) {
      const auto* const row = dynamic_cast<FormRow*>(candidate);
      if (row != nullptr && row->control() != nullptr && row->control()->accessibleName() == name)
        return row->control();
    }
    return nullptr;
  }
  static QPushButton* button(const QWidget& window, const QString& text) {
    for (auto* candidate : window.findChildren<QPushButton*>()) {
      if (candidate->text() == text && candidate->isVisible()) return candidate;
    }
    return nullptr;
  }
  static QMessageBox* question() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }

  test::GalleryData data{false};
};

TEST_F(Windows, store_every_setting_that_is_changed_by_keyboard_and_show_it_again_after_a_reset) {
  using Page = SettingsWindow::Page;
  struct Row {
    Page page;
    const char* name;
    std::string_view key;
    std::optional<DefaultsValue> after;  ///< nothing: anything else than before
    std::optional<DefaultsValue> standard;
  };
  const auto text = [](const char* raw) { return DefaultsValue(std::string(raw)); };
  const std::vector<Row> rows{
      {Page::general, "Show in the task bar", settingsKey::showInDock, false, true},
      {Page::general, "Insert phrases while I speak", settingsKey::insertWhileRecording, true, false},
      {Page::general, "Restore the clipboard", settingsKey::restorePreviousClipboard, false, true},
      {Page::general, "Position", settingsKey::overlayAnchor, text("bottom"), text("right")},
      {Page::general, "Keep the indicator on the screen", settingsKey::showRestingIndicator, true, false},
      {Page::shortcut, "Dictation shortcut", settingsKey::shortcutConfiguration, {}, {}},
      {Page::audio, "Play sounds", settingsKey::feedbackSound, false, true},
      {Page::languages, "Recognize", settingsKey::languageMode, text("selected"), text("automaticAll")},
      {Page::languages, "My languages", settingsKey::selectedLanguages, {}, {}},
      {Page::languages, "Recognize", settingsKey::languageMode, text("single"), text("automaticAll")},
      {Page::languages, "Language", settingsKey::singleLanguage, text("es"), text("en")},
      {Page::text, "Remove filler words", settingsKey::removeFillerWords, true, false},
      {Page::text, "Spoken commands", settingsKey::spokenCommands, true, false},
      {Page::text, "Space between dictations", settingsKey::spaceBetweenDictations, true, false},
      {Page::text, "Automatic correction routing", settingsKey::smartRefinementRouting,
       text("selectedMultilingualModel"), text("automaticByLanguage")},
      {Page::text, "Language model", settingsKey::smartLocalModel, {}, text("gemma4E2")},
      {Page::text, "Format with a local model", settingsKey::smartFormatting, false, false},
      {Page::privacy, "Keep a history", settingsKey::historyEnabled, false, false},
      {Page::privacy, "Auto-delete history", settingsKey::historyRetention, text("fiveMinutes"),
       text("forever")},
      {Page::advanced, "Work ahead while I speak", settingsKey::processWhileRecording, false, true},
      {Page::advanced, "Keep the speech model in memory", settingsKey::recogniserIdleMinutes,
       std::int64_t{60}, std::int64_t{10}},
      {Page::advanced, "Check for updates automatically", settingsKey::automaticUpdateChecks, true, false},
  };
  SettingsWindow window(data.services());
  for (const auto& row : rows) {
    window.present(row.page);
    auto* operated = control(window, row.name);
    ASSERT_NE(operated, nullptr) << row.name;
    if (auto* const list = operated->findChild<QListWidget*>(); list != nullptr) {
      list->setCurrentRow(2);
      operated = list;
    }
    const auto before = data.stored(row.key);
    const auto* const choice = qobject_cast<QComboBox*>(operated);
    const bool isLast = choice != nullptr && choice->currentIndex() + 1 == choice->count();
    QTest::keyClick(operated, choice == nullptr ? Qt::Key_Space : isLast ? Qt::Key_Up : Qt::Key_Down);
    const auto now = data.stored(row.key);
    EXPECT_TRUE(row.after ? now == row.after : now != before) << row.name;
  }
  const auto* retention = qobject_cast<QComboBox*>(control(window, "Auto-delete history"));
  data.settings.setHistoryRetention(HistoryRetention::oneWeek);
  EXPECT_EQ(retention->currentText(), "After 1 week") << "a change from elsewhere";
  for (const auto page : {Page::general, Page::shortcut, Page::audio, Page::languages, Page::text,
                          Page::privacy, Page::advanced}) {
    window.present(page);
    button(window, "Reset This Page…")->click();
    ASSERT_TRUE(waitUntil([] { return question() != nullptr; }));
    button(*question(), "Reset")->click();
    ASSERT_TRUE(waitUntil([] { return question() == nullptr; }));
  }
  for (const auto& row : rows) {
    EXPECT_TRUE(!row.standard || data.stored(row.key) == row.standard) << row.name;
  }
  EXPECT_TRUE(isSameShortcut(data.settings.shortcut(), proposedShortcuts().front()));
  EXPECT_EQ(retention->currentText(), "Never delete automatically");
}

TEST_F(Windows, find_settings_by_their_words_and_leave_choices_alone_under_the_wheel) {
  SettingsWindow window(data.services());
  window.present(SettingsWindow::Page::general);
  auto* search = window.findChild<QLineEdit*>();
  const auto* list = window.findChild<QListWidget*>();
  QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(search, "FILLER words");
  EXPECT_TRUE(control(window, "Remove filler words")->isVisible());
  EXPECT_FALSE(control(window, "Language model")->isVisible());
  EXPECT_TRUE(list->item(0)->isHidden());
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_TRUE(control(window, "Language model")->isVisible());
  EXPECT_FALSE(list->item(0)->isHidden());

  auto* model = qobject_cast<QComboBox*>(control(window, "Language model"));
  const auto before = model->currentIndex();
  QWheelEvent wheel({5, 5}, model->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(model, &wheel);
  EXPECT_EQ(model->currentIndex(), before);
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(Windows, store_the_vocabulary_when_the_typing_pauses_and_at_the_latest_when_they_go) {
  auto window = std::make_unique<SettingsWindow>(data.services());
  window->present(SettingsWindow::Page::text);
  QPlainTextEdit* editor = nullptr;
  for (auto* candidate : window->findChildren<QPlainTextEdit*>()) editor = candidate;
  const auto before = data.settings.personalVocabulary();
  editor->moveCursor(QTextCursor::End);
  QTest::keyClicks(editor, "new = line");
  EXPECT_EQ(data.settings.personalVocabulary(), before);
  ASSERT_TRUE(waitUntil([&] { return data.settings.personalVocabulary() == before + "new = line"; }));
  QTest::keyClicks(editor, "s");
  window.reset();
  EXPECT_EQ(data.settings.personalVocabulary(), before + "new = lines");
}

TEST_F(Windows, delete_from_the_history_only_what_was_confirmed_and_keep_no_words_when_closed) {
  QPointer<HistoryWindow> window(new HistoryWindow(data.historyServices()));
  window->present();
  const auto count = data.history.entries().size();
  button(*window, "Delete…")->click();
  ASSERT_TRUE(waitUntil([] { return question() != nullptr; }));
  QTest::keyClick(question(), Qt::Key_Return);  // the safe answer
  ASSERT_TRUE(waitUntil([] { return question() == nullptr; }));
  EXPECT_EQ(data.history.entries().size(), count);
  button(*window, "Delete…")->click();
  ASSERT_TRUE(waitUntil([] { return question() != nullptr; }));
  EXPECT_TRUE(question()->informativeText().contains("cannot be recovered"));
  button(*question(), "Delete")->click();
  ASSERT_TRUE(waitUntil([&] { return data.history.entries().size() == count - 1; }));
  QTest::keyClick(window, Qt::Key_Escape);
  ASSERT_TRUE(waitUntil([&] { return window.isNull(); }));
}

TEST_F(Windows, ask_the_shelf_of_models_for_what_their_buttons_say) {
  SettingsWindow window(data.services());
  window.present(SettingsWindow::Page::models);
  button(window, "Pause")->click();
  button(window, "Verify")->click();
  button(window, "Use")->click();
  button(window, "Try Again")->click();
  EXPECT_EQ(data.models.calls, (std::vector<std::string>{"pause parakeet", "verify gemma-4-e2b",
                                                         "choose qwen-0.6b", "download sage"}));
  EXPECT_FALSE(button(window, "Download")->isEnabled()) << "of a model that cannot run here";
}

}  // namespace
