#include "Interface/Settings/VocabularyLines.h"
#include "Support/Testing.h"

namespace {

// A comment line, no sign, no term, two kinds of line ends, spaces that nobody would type twice, a no-break
// space.
const QString odd =
    QStringLiteral("  kde =KDE\r\nno sign\n= nothing\n\ngit hub  =  Git\u00a0Hub \r\nlast = one");

struct Change {
  const char* name;
  QString result, expected;
};

TEST(VocabularyLines, a_change_in_the_table_leaves_every_other_byte_alone) {
  const VocabularyLines lines(odd);
  EXPECT_EQ(lines.entryCount(), 3);
  auto expect = [](const QString& from, const QString& to) {
    auto text = odd;
    EXPECT_EQ(text.count(from), 1);
    return text.replace(from, to);
  };
  const auto swapped =
      QStringLiteral("git hub  =  Git\u00a0Hub \r\nno sign\n= nothing\n\n  kde =KDE\r\nlast = one");
  for (const auto& [name, result, expected] : {
           Change{"replaced", lines.replaced(0, "kay\nd=e", "K D E"),
                  expect("  kde =KDE", "kay d e = K D E")},
           Change{"last removed", lines.removed(5), expect("last = one", "")},
           Change{"first removed", lines.removed(0), expect("  kde =KDE\r\n", "")},
           Change{"swapped", lines.swapped(4, 0), swapped},
           Change{"appended", lines.appended("a", "b"), odd + "\na = b\n"},
       }) {
    EXPECT_EQ(result, expected) << name;
  }
  EXPECT_EQ(VocabularyLines(QString()).appended("a", "b"), "a = b\n");
}

TEST(VocabularyLines, an_editor_that_knows_one_line_end_keeps_the_others) {
  const VocabularyLines lines(odd);
  auto shown = odd;
  shown.replace("\r\n", "\n");
  EXPECT_EQ(lines.edited(shown), odd);
  const auto edit = [&](const char* from, const char* to) {
    auto text = shown;
    auto expected = odd;
    EXPECT_EQ(lines.edited(text.replace(from, to)), expected.replace(from, to)) << from << " -> " << to;
  };
  edit("no sign\n", "");
  edit("no sign\n", "new = line\nno sign\n");
  edit("no sign", "now = sign");
  edit("last = one", "");
  edit("last = one", "last = one\nmore = words\n");
  EXPECT_EQ(lines.edited(""), "");
  EXPECT_EQ(VocabularyLines("a = b").edited("a = b\nc"), "a = b\nc");
  EXPECT_EQ(VocabularyLines("a = b\r\nc\r\n").edited("a = b"), "a = b");
  EXPECT_EQ(VocabularyLines("").edited("x\n"), "x\n");
}

}  // namespace
