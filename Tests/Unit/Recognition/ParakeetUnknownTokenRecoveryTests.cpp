#include "Recognition/ParakeetUnknownTokenRecovery.h"
#include "Support/Testing.h"

namespace {

struct Row {
  const char* name;
  const char* text;
  std::optional<std::string> language;
  const char* expected;
};

class UnknownTokenRecovery : public ::testing::TestWithParam<Row> {};

const Row rows[] = {
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
    {"NextToACyrillicLetterInAnEnglishText", "a long sentence about <unk>ж", {}, "a long sentence about ёж"},
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
};

}  // namespace

TEST_P(UnknownTokenRecovery, Row) {
  EXPECT_EQ(ParakeetUnknownTokenRecovery::apply(GetParam().text, GetParam().language), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(, UnknownTokenRecovery, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });
