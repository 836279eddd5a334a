#include "Delivery/PasteChordTable.h"
#include "Support/Testing.h"

TEST(PasteChordTable, KnowsTerminalsAndTakesCtrlVElsewhere) {
  const PasteChordTable table;
  EXPECT_EQ(table.method("Mousepad", "mousepad"), PasteMethod{});
  EXPECT_EQ(table.method("XTerm", "xterm"), (PasteMethod{PasteChord::shiftInsert, true}));
  EXPECT_EQ(table.method("XTerm", "xterm").keysByHand(), "Paste Last Dictation Again");
  EXPECT_EQ(table.method("URxvt", "urxvt").keysByHand(), "Ctrl+Alt+V");
  EXPECT_EQ(table.method("xfce4-TERMINAL", ""), (PasteMethod{PasteChord::controlShiftV, false}));
  EXPECT_EQ(table.method("Something", "kitty"), (PasteMethod{PasteChord::controlShiftV, false}));
}

TEST(PasteChordTable, TheUsersLinesWinAndBadOnesAreNamed) {
  PasteChordTable table;
  const auto invalid = table.addUserLines(
      "# my terminals\n"
      "\n"
      "  XTerm =  ctrl+shift+v \r\n"
      "My=Editor = Shift+Insert PRIMARY\n"
      "Mousepad = Ctrl+Alt+V\n"
      "= Ctrl+V\n"
      "no equals sign\n"
      "Mousepad = Ctrl+V primary more\n"
      "Kate = Ctrl+V\n"
      "Kate = Shift+Insert");
  EXPECT_EQ(table.method("XTerm", "xterm"), (PasteMethod{PasteChord::controlShiftV, false}));
  EXPECT_EQ(table.method("My=Editor", ""), (PasteMethod{PasteChord::shiftInsert, true}));
  EXPECT_EQ(table.method("Kate", ""), (PasteMethod{PasteChord::shiftInsert, false}));
  EXPECT_EQ(table.method("Mousepad", ""), PasteMethod{});
  std::vector<std::size_t> numbers;
  for (const auto& line : invalid) numbers.push_back(line.number);
  EXPECT_EQ(numbers, (std::vector<std::size_t>{5, 6, 7, 8}));
}
