#include "Interface/Common/Style.h"
#include "Interface/Pill/PillPlace.h"
#include "Interface/Pill/RecordingPill.h"
#include "Platform/Qt/QtCompositor.h"
#include "Support/X11/WindowTests.h"
#include "Support/X11/XWindows.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>

#include <xcb/xtest.h>

namespace {

using Case = DictationState::Case;

class Pill : public ::testing::Test {
 protected:
  void show(const DictationState& state) {
    pill.update(state);
    ASSERT_TRUE(waitUntil([this] { return isOnScreen(); }));
  }
  [[nodiscard]] bool isOnScreen() const {
    const auto cookie = xcb_get_window_attributes(x.connection(), static_cast<xcb_window_t>(pill.winId()));
    const auto reply = test::XObserver::own(xcb_get_window_attributes_reply(x.connection(), cookie, nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
  }
  /// The server has moved the window to where the toolkit believes it to be: these clicks come another way.
  [[nodiscard]] bool isInPlace() const {
    const auto window = static_cast<xcb_window_t>(pill.winId());
    const auto sized = test::XObserver::own(
        xcb_get_geometry_reply(x.connection(), xcb_get_geometry(x.connection(), window), nullptr));
    return sized && QRect(sized->x, sized->y, sized->width, sized->height) == pill.geometry();
  }
  void click(QPoint where) const {
    ASSERT_TRUE(waitUntil([this] { return isInPlace(); }));
    const auto root = x.screen().root;
    xcb_test_fake_input(x.connection(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root,
                        static_cast<std::int16_t>(where.x()), static_cast<std::int16_t>(where.y()), 0);
    for (const auto type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
      xcb_test_fake_input(x.connection(), static_cast<std::uint8_t>(type), 1, XCB_CURRENT_TIME, root, 0, 0,
                          0);
    xcb_flush(x.connection());
  }
  [[nodiscard]] QString text() const { return pill.findChild<QLabel*>()->text(); }
  [[nodiscard]] QColor pixel(QPoint where) const {
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, where.x(), where.y(), 1, 1)
        .toImage()
        .pixelColor(0, 0);
  }

  test::XObserver x;
  void press(const QString& name) {
    for (auto* button : pill.findChildren<QAbstractButton*>()) {
      if (button->accessibleName() == name && button->isVisible())
        return click(button->mapToGlobal(button->rect().center()));
    }
    FAIL() << name.toStdString();
  }
  [[nodiscard]] QRect screen() const { return QGuiApplication::primaryScreen()->availableGeometry(); }

  int clicks = 0;
  int cancelled = 0;
  std::vector<OverlayPosition> moves;
  QtCompositor compositing;
  RecordingPill pill{{.toggle = [this] { ++clicks; },
                      .cancel = [this] { ++cancelled; },
                      .moved = [this](OverlayPosition edge) { moves.push_back(edge); },
                      .screen = {},
                      .compositor = &compositing}};
};

TEST_F(Pill, never_takes_the_focus_when_it_shows_changes_or_is_clicked) {
  test::ForeignWindow editor;
  ASSERT_TRUE(waitUntil([&] { return editor.takesFocus(); }));
  const int losses = editor.focusLosses();
  show(Case::listening);
  pill.update(Case::transcribing);
  pill.update(Case::listening);
  QCoreApplication::processEvents();
  click(pill.mapToGlobal(pill.findChild<QLabel*>()->geometry().center()));
  ASSERT_TRUE(waitUntil([this] { return clicks == 1; }));
  press("Stop and insert");
  ASSERT_TRUE(waitUntil([this] { return clicks == 2; }));
  press("Discard");
  ASSERT_TRUE(waitUntil([this] { return cancelled == 1; }));
  pill.update(DictationState());
  ASSERT_TRUE(waitUntil([this] { return !isOnScreen(); }));
  EXPECT_TRUE(editor.hasFocus());
  EXPECT_EQ(editor.focusLosses(), losses) << "not even for a moment";
}

TEST_F(Pill, says_what_the_dictation_does_and_is_gone_at_rest) {
  pill.setEdge(OverlayPosition::bottom);
  const std::vector<std::pair<DictationState, std::string>> rows{
      {Case::listening, "Listening… release shortcut"},
      {Case::listeningBehind, "Listening · recognition is catching up…"},
      {Case::transcribing, "Transcribing locally…"},
      {Case::copied, "Copied — press Ctrl+V"},
      {DictationState::error("Microphone permission is required"), "Microphone permission is required"},
  };
  for (const auto& [state, words] : rows) {
    show(state);
    EXPECT_EQ(text().toStdString(), words);
    EXPECT_GE(pill.width(), pill.fontMetrics().horizontalAdvance(text())) << "in one line, uncut";
  }
  show(DictationState::error(std::string(400, 'w') + " " + std::string(40, 'i')));
  for (const auto edge : allCases<OverlayPosition>()) {
    pill.setEdge(edge);
    EXPECT_TRUE(screen().contains(pill.frameGeometry()));
    EXPECT_LT(pill.height(), isHorizontal(edge) ? 90 : 260) << "three lines, not more";
  }
  EXPECT_NE(pill.findChild<QLabel*>()->toolTip().indexOf("iiii"), -1) << "the rest is there on hover";
  press("Dismiss");
  EXPECT_TRUE(waitUntil([this] { return !isOnScreen(); }));
  show(Case::copied);
  pill.update(DictationState());
  EXPECT_TRUE(waitUntil([this] { return !isOnScreen(); }));
}

TEST_F(Pill, shows_the_end_of_what_was_recognised_while_it_records) {
  pill.setEdge(OverlayPosition::top);
  show(Case::listening);
  const auto bare = pill.height();
  const auto soFar = [this] { return pill.findChildren<QLabel*>().at(1); };
  for (int piece = 0; piece < 60; ++piece)
    pill.addRecognised(SpokenText("piece " + std::to_string(piece) + " <b>"));
  EXPECT_TRUE(soFar()->text().endsWith("piece 59 <b>"));
  EXPECT_LT(pill.height(), bare + 50);
  EXPECT_LT(pill.width(), screen().width() / 2);
  pill.update(Case::success);
  EXPECT_TRUE(soFar()->text().isEmpty()) << "no words stay behind";
}

TEST_F(Pill, can_stay_as_a_small_button_that_starts) {
  pill.setShownAtRest(true);
  ASSERT_TRUE(waitUntil([this] { return isOnScreen(); }));
  EXPECT_LT(pill.width(), 60);
  click(pill.frameGeometry().center());
  EXPECT_TRUE(waitUntil([this] { return clicks == 1; }));
  pill.setShownAtRest(false);
  EXPECT_TRUE(waitUntil([this] { return !isOnScreen(); }));
}

TEST_F(Pill, is_drawn_to_another_edge) {
  show(Case::transcribing);
  const auto root = x.screen().root;
  const auto fake = [&](std::uint8_t type, std::uint8_t detail, QPoint where) {
    xcb_test_fake_input(x.connection(), type, detail, XCB_CURRENT_TIME, root,
                        static_cast<std::int16_t>(where.x()), static_cast<std::int16_t>(where.y()), 0);
    xcb_flush(x.connection());
  };
  const auto from = pill.mapToGlobal(pill.findChild<QLabel*>()->geometry().center());
  const QPoint to(screen().center().x(), screen().top() + 40);
  fake(XCB_MOTION_NOTIFY, 0, from);
  fake(XCB_BUTTON_PRESS, 1, {});
  for (int step = 1; step <= 5; ++step) fake(XCB_MOTION_NOTIFY, 0, from + (to - from) * step / 5);
  fake(XCB_BUTTON_RELEASE, 1, {});
  ASSERT_TRUE(waitUntil([this] { return !moves.empty(); }));
  EXPECT_EQ(moves, std::vector{OverlayPosition::top});
  EXPECT_EQ(pill.pos(), pillPlace(pill.size(), screen(), OverlayPosition::top));
  EXPECT_EQ(clicks, 0);
}

TEST_F(Pill, tells_of_a_silent_microphone_only_while_it_records) {
  show(Case::listening);
  pill.showCaptureCondition(CaptureCondition::silent);
  EXPECT_EQ(text(), "The microphone is silent");
  pill.update(Case::transcribing);
  EXPECT_EQ(text(), "Transcribing locally…");
  pill.update(Case::listening);
  EXPECT_EQ(text(), "Listening… release shortcut") << "the next recording begins without it";
}

TEST_F(Pill, moves_its_meter_with_the_levels_that_arrive_and_with_nothing_else) {
  show(Case::listening);
  const auto silent = pill.grab().toImage();
  QCoreApplication::processEvents();
  pill.update(Case::listeningBehind);
  pill.update(Case::listening);
  EXPECT_EQ(pill.grab().toImage(), silent);
  pill.setLevel(0);
  EXPECT_EQ(pill.grab().toImage(), silent);
  pill.setLevel(0.8);
  const auto loud = pill.grab().toImage();
  EXPECT_NE(loud, silent);
  QCoreApplication::processEvents();
  EXPECT_EQ(pill.grab().toImage(), loud);
  pill.setLevel(0);
  EXPECT_NE(pill.grab().toImage(), loud) << "the bar has moved on";
  for (int step = 0; step < 20; ++step) pill.setLevel(0);
  EXPECT_EQ(pill.grab().toImage(), silent);
  pill.setLevel(1);
  pill.update(Case::transcribing);
  pill.update(Case::listening);
  EXPECT_EQ(pill.grab().toImage(), silent) << "the next recording begins empty";
}

TEST_F(Pill, cuts_its_corners_where_nothing_blends_them) {
  QWidget paper(nullptr, Qt::X11BypassWindowManagerHint);
  paper.setStyleSheet("background: white");
  paper.setGeometry(QGuiApplication::primaryScreen()->geometry());
  paper.show();
  ASSERT_TRUE(waitUntil([&] { return pixel({5, 5}) == QColor(Qt::white); }));
  show(Case::listening);
  const auto frame = pill.frameGeometry();
  EXPECT_TRUE(waitUntil([&] { return pixel({frame.center().x(), frame.top() + 2}).lightness() < 100; }));
  for (const auto corner : {frame.topLeft(), frame.topRight(), frame.bottomLeft(), frame.bottomRight()})
    EXPECT_EQ(pixel(corner), QColor(Qt::white)) << corner.x() << "," << corner.y();
}

TEST_F(Pill, keeps_its_smooth_corners_where_a_compositor_runs) {
  const auto compositor = xcb_generate_id(x.connection());
  xcb_create_window(x.connection(), XCB_COPY_FROM_PARENT, compositor, x.screen().root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  const auto selection = x.atom("_NET_WM_CM_S0");
  xcb_set_selection_owner(x.connection(), compositor, selection, XCB_CURRENT_TIME);
  ASSERT_NE(x.inputFocus(), xcb_window_t{XCB_WINDOW_NONE});  // a round trip: it is done
  show(Case::listening);
  EXPECT_TRUE(pill.mask().isEmpty());
  xcb_set_selection_owner(x.connection(), XCB_WINDOW_NONE, selection, XCB_CURRENT_TIME);
  ASSERT_NE(x.inputFocus(), xcb_window_t{XCB_WINDOW_NONE});
  EXPECT_TRUE(waitUntil([this] { return !pill.mask().isEmpty(); })) << "the compositor has gone";
}

TEST_F(Pill, has_a_meter_that_does_not_run_where_motion_is_unwelcome) {
  auto* style = new Style;
  style->setReducedMotion(true);
  QApplication::setStyle(style);
  show(Case::listening);
  pill.setLevel(0.5);
  const auto half = pill.grab().toImage();
  pill.setLevel(0.5);
  EXPECT_EQ(pill.grab().toImage(), half);
  pill.setLevel(1);
  EXPECT_NE(pill.grab().toImage(), half);
  QApplication::setStyle(QStringLiteral("Fusion"));
}

TEST_F(Pill, stays_at_the_middle_of_its_edge_when_its_text_gets_longer) {
  for (const auto edge : allCases<OverlayPosition>()) {
    pill.setEdge(edge);
    show(Case::copied);
    show(Case::listeningBehind);
    EXPECT_EQ(pill.pos(), pillPlace(pill.size(), screen(), edge)) << rawValue(edge);
  }
}

}  // namespace
