#include "CleanUp/SpokenCommands.h"
#include "Platform/Fake/FakeLanguageRecognizer.h"
#include "Support/Testing.h"

TEST(SpokenCommands, WriteWhatTheyName) {
  struct Row {
    const char* what;
    std::optional<std::string> language;
    const char* said;
    const char* written;
  };
  for (const auto& row : std::vector<Row>{
           {"marks and breaks", "en", "dear Ann comma new line thank you period see you question mark",
            "dear Ann,\nthank you. See you?"},
           {"quotes, a paragraph", "en",
            "he said open quote yes period close quote new paragraph then he left",
            "he said “yes.”\n\nThen he left"},
           {"marks of the recogniser's own are swallowed", "en", "Hello, Comma. my friend. Period. Bye.",
            "Hello, my friend. Bye."},
           {"a sentence's end before a break is not", "en", "It is done. New line. It, new line, works",
            "It is done.\nIt\nworks"},
           {"literal", "en", "a literal comma, a literal word and a literal new line comma ok",
            "a comma, a literal word and a new line, ok"},
           {"the longest one, however it is written", "en", "one semi-colon two semicolon", "one; two;"},
           {"inside longer words", "en", "commas periodically", "commas periodically"},
           {"German", "de", "er sagte Doppelpunkt Anführungszeichen auf nein Punkt Anführungszeichen zu",
            "er sagte: „nein.“"},
           {"French", "fr", "tu viens point d’interrogation à la ligne oui point-virgule non",
            "tu viens\u00A0?\nOui\u00A0; non"},
           {"Spanish", "es", "abrir interrogación vienes cerrar interrogación sí punto y coma no",
            "¿vienes? Sí; no"},
           {"Russian", "ru", "да запятая конечно точка с запятой точка буквально точка",
            "да, конечно;. Точка"},
           {"another language", "pl", "to jest comma", "to jest comma"},
           {"too short to tell", std::nullopt, "ja Komma gut", "ja, gut"},
           {"nobody can tell", std::nullopt, "one two three comma four", "one two three, four"},
           {"no command: byte for byte", "en", " two  spaces\n", " two  spaces\n"},
       }) {
    EXPECT_EQ(SpokenCommands::apply(row.said, row.language, FakeLanguageRecognizer()), row.written)
        << row.what;
  }
}
