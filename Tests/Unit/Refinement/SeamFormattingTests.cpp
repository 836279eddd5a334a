#include "Foundation/Text/Text.h"
#include "Refinement/SeamFormatting.h"
#include "Support/Testing.h"

TEST(SeamFormatting, JoinsWhatTheSpeakersPauseHasParted) {
  struct Row {
    const char *left, *right, *question, *answer, *joined;
  };
  for (const auto& row : std::vector<Row>{
           {"We went to the.", "Store yesterday.", "we went to the store yesterday",
            "We went to the store yesterday.", "We went to the|store yesterday."},
           {"I came.", "But he left.", "I came but he left", "I came, but he left.", "I came,|but he left."},
           {"Then I met,", "Peter. He smiled", "then I met peter. He smiled", "Then I met Peter. He smiled.",
            "Then I met|Peter. He smiled"},
           {"It is late.", "We go home.", "it is late we go home", "It is late. We go home.", nullptr},
           {"It is late.", "We go home.", "it is late we go home", "it is late we go home", nullptr},
           {"It is late.", "We go home.", "it is late we go home", "It is late, we stay home.", nullptr},
           {"It is late.", "We go home.", "it is late we go home", "It is late", nullptr},
           {"And then.", "I'll go.", "and then I'll go", "And then I'll go!", "And then|I'll go."},
           {"Ask the.", "NATO.", "ask the NATO", "Ask the NATO.", "Ask the|NATO."},
           {"Вчера мы.", "Были дома.", "вчера мы были дома", "Вчера мы были дома.", "Вчера мы|были дома."},
       }) {
    EXPECT_EQ(SeamFormatting::question(row.left, row.right), row.question);
    const auto sides = SeamFormatting::applied(row.left, row.right, row.answer);
    EXPECT_EQ(sides ? sides->left + "|" + sides->right : "", row.joined != nullptr ? row.joined : "")
        << row.answer;
  }
}

TEST(SeamFormatting, LeavesSeamsAloneThatSayMore) {
  for (const auto& [left, right] : std::vector<SeamFormatting::Sides>{{"Really?", "Yes."},
                                                                      {"Am 3.", "Mai."},
                                                                      {"Bread, milk etc. e.g.", "This."},
                                                                      {"We were", "at home."},
                                                                      {"He said.", "“Yes.”"},
                                                                      {"", "Yes."},
                                                                      {"No.", ""},
                                                                      {"- .", "Yes."}}) {
    EXPECT_EQ(SeamFormatting::question(left, right), std::nullopt) << left;
  }
  const std::string many = "a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a";
  const auto question = SeamFormatting::question(many + " b.", "C " + many);
  ASSERT_TRUE(question.has_value());
  EXPECT_EQ(text::words(*question).size(), SeamFormatting::mostWords);
  EXPECT_NE(question->find("a b c a"), std::string::npos);
}
