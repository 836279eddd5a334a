#include "CleanUp/FillerCleanUp.h"
#include "Platform/Linux/LanguageRecognizer/CLD2LanguageRecognizer.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace murmel;

TEST(FillerLanguages, SentencesInOtherLanguagesKeepTheirWords) {
  const CLD2LanguageRecognizer recognizer;
  // With words that are, or look like, fillers of English or Russian.
  for (const std::string text : {
           "Wir treffen uns um drei Uhr vor dem Bahnhof.",
           "Es geht um die Frage, ob wir morgen fahren oder nicht.",
           "Um ehrlich zu sein, habe ich das Buch noch nicht gelesen.",
           "Eu comprei um carro novo na semana passada.",
           "Ela tem um irmão e uma irmã que moram em Lisboa.",
           "Um dia vamos viajar para a praia com as crianças.",
           "Ну що, ходімо сьогодні до театру разом із друзями?",
           "Ну и какво значи това, че днес няма да работим до късно?",
           "Het gaat um eerlijk gezegd niet goed met de buurman.",
           "Ну, я сёння не магу прыйсці, бо ў мяне шмат працы.",
           "Типа шеме је непозната, али ћемо је сутра проверити.",
           "Uh, ce film a été vraiment très long et assez ennuyeux.",
           "Basically è una parola inglese che sento spesso in ufficio.",
           "Kind of is een uitdrukking die wij hier nooit gebruiken.",
       }) {
    EXPECT_EQ(FillerCleanUp::apply(text, std::nullopt, recognizer), text);
  }
}

TEST(FillerLanguages, EnglishAndRussianLoseTheirFillers) {
  const CLD2LanguageRecognizer recognizer;
  for (const auto& [text, cleaned] : std::vector<std::pair<std::string, std::string>>{
           {"Um, I think we should, you know, leave before the rain starts.",
            "I think we should, leave before the rain starts."},
           {"The meeting is basically over. Um, yes.", "The meeting is over. yes."},
           {"Ну, мы как бы уже договорились встретиться завтра утром.",
            "мы уже договорились встретиться завтра утром."},
           {"Um, the train leaves at nine in the morning. Wir treffen uns um drei Uhr vor dem Bahnhof.",
            "the train leaves at nine in the morning. Wir treffen uns um drei Uhr vor dem Bahnhof."},
       }) {
    EXPECT_EQ(FillerCleanUp::apply(text, std::nullopt, recognizer), cleaned);
  }
  // The language that a dictation was forced to decides alone.
  EXPECT_EQ(FillerCleanUp::apply("um drei", "de", recognizer), "um drei");
  EXPECT_EQ(FillerCleanUp::apply("um three", "en", recognizer), "three");
}
