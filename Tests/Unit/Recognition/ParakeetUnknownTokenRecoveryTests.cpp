#include "Recognition/ParakeetUnknownTokenRecovery.h"
#include "Support/Testing.h"

TEST(ParakeetUnknownTokenRecovery, WritesALetterOrNothing) {
  struct Row {
    const char* name;
    std::string_view text;
    std::optional<std::string> language;
    std::string_view expected;
  };
  for (const auto& row : std::vector<Row>{
           {"LeavesTextWithoutTokensAlone", "  two  spaces\t\tstay ", {}, "  two  spaces\t\tstay "},
           {"AfterACyrillicLetter", "вс<unk>", {}, "всё"},
           {"AtTheStart", "<unk>лка", {}, "Ёлка"},
           {"AfterAFullStop", "Да. <unk>лка", {}, "Да. Ёлка"},
           {"AfterAnExclamationMarkAndALineBreak", "Да!\n<unk>лка", {}, "Да!\nЁлка"},
           {"AfterAQuestionMark", "Да?<unk>лка", {}, "Да?Ёлка"},
           {"AfterAComma", "Да, <unk>лка", {}, "Да, ёлка"},
           {"AloneInARussianText", "да <unk> нет", {}, "да ё нет"},
           {"RemovedFromEnglish", "hello <unk> world", {}, "hello world"},
           {"OnlyATokenIsNothing", "<unk>", {}, ""},
           {"OnlyDigitsAreNotRussian", "12 <unk> 34", {}, "12 34"},
           {"AsManyCyrillicAsLatinIsRussian", "ab <unk> да", {}, "ab ё да"},
           {"FewerCyrillicThanLatinIsNot", "abc <unk> да", {}, "abc да"},
           {"NextToACyrillicLetterInAnEnglishText",
            "a long sentence about <unk>ж",
            {},
            "a long sentence about ёж"},
           {"NeighboursOfNeighbouringTokens", "в<unk><unk>", {}, "вёё"},
           {"NeighbouringTokensInEnglish", "a<unk><unk>b", {}, "ab"},
           {"TwoAtTheStart", "<unk><unk>да", {}, "Ёёда"},
           {"ForcedEnglishRemovesAll", "вс<unk> <unk>лка", "en", "вс лка"},
           {"ForcedUkrainianRemovesAll", "вс<unk>", "uk", "вс"},
           {"ForcedRussianReplacesBetweenLatinLetters", "a<unk>b", "ru", "aёb"},
           {"ForcedRussianAlone", "<unk>", "ru", "Ё"},
           {"CollapsesRunsButKeepsASingleTab", "a <unk>\t \tb\tc", "en", "a b\tc"},
           {"KeepsOtherMarkersAndBrokenOnes", "<unk <UNK> x<unk>", "en", "<unk <UNK> x"},
           {"TrimsAllWhiteSpace", "\u00a0\n да <unk> \u2003", {}, "да ё"},
       }) {
    EXPECT_EQ(ParakeetUnknownTokenRecovery::apply(row.text, row.language), row.expected) << row.name;
  }
}
