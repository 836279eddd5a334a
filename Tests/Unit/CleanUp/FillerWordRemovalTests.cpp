#include "CleanUp/FillerCleanUp.h"
#include "CleanUp/FillerWordRemoval.h"
#include "Platform/Fake/FakeLanguageRecognizer.h"
#include "Support/Testing.h"

TEST(FillerWordRemoval, RemovesFillersAndTidiesUp) {
  struct Row {
    const char* what;
    std::string_view text, cleaned;
  };
  for (const auto& row : std::vector<Row>{
           {"leading filler, doubled commas, two spaces inside", "Um, so, you  know, it works",
            "so, it works"},
           {"never inside a word", "umbrella album um_x um2 ünum", "umbrella album um_x um2 ünum"},
           {"any case", "UM Basically, ЭМ ну да", "да"},
           {"longest first", "kind of a test", "a test"},
           {"a filler of two words across a line break", "это как\n\tбы всё", "это всё"},
           {"a cut-off filler of two words stays", "kind and sort as как", "kind and sort as как"},
           {"no space before punctuation", "yes , no ; maybe uh ?", "yes, no; maybe?"},
           {"nothing but fillers", "um, uh. ну", "."},
           {"white space of all kinds", "a\u00A0\u2003b\r\n c", "a b c"},
           {"letters of other alphabets are boundaries", "нуum umя", "нуum umя"},
           {"a hyphen is a boundary", "uh-huh", "-huh"},
           {"nothing", "", ""},
           {"not text", "um \xFF", "\uFFFD"},
       }) {
    EXPECT_EQ(FillerWordRemoval::apply(row.text), row.cleaned) << row.what;
  }
}

TEST(FillerWordRemoval, StaysLinear) {
  // Each of these has tens of thousands of places at which a match could begin and fail late.
  const std::vector<std::string> units{"как ", "you ", "kind  ", ", ", " ,", "\t", "um", "ээ", "um ,"};
  for (const auto& unit : units) {
    std::string text;
    while (text.size() < 60'000) text += unit;
    EXPECT_LE(FillerWordRemoval::apply(text).size(), text.size()) << unit;
  }
}

TEST(FillerCleanUp, LeavesNoRuins) {
  for (const auto& [text, cleaned] : std::vector<std::pair<std::string, std::string>>{
           {"(um) yes", "yes"},
           {"Um? What", "What"},
           {"It is, you know. Good", "It is. Good"},
           {"Yes. Um, uh. No, kind of!", "Yes. No!"},
           {"I like it (well, um, a little)", "I like it (well, a little)"},
           {"Wait... um, what?", "Wait... what?"},
           {"Ну. Да, в общем.", "Да."},
           {"umbrella (umbrella). Um_x?", "umbrella (umbrella). Um_x?"},
       }) {
    EXPECT_EQ(FillerCleanUp::apply(text, "en", FakeLanguageRecognizer()), cleaned);
  }
}
