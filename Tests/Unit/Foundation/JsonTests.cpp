#include "Foundation/Json/Json.h"
#include "Support/Testing.h"

TEST(Json, WritesWhatItReadAndNothingForWhatIsNoJson) {
  const std::pair<std::string, std::string> rows[] = {
      {" {\"b\" : [1, {\"\": null}], \"a\": true} ", R"({"a":true,"b":[1,{"":null}]})"},
      {"[-9223372036854775808, 9223372036854775808, 18446744073709551615, -0]",
       "[-9223372036854775808,9223372036854775808,18446744073709551615,0]"},
      {"[18446744073709551616, 0.1, 1e2, -0.0, 5e-324]", "[1.8446744073709552e+19,0.1,100.0,-0.0,5e-324]"},
      {R"({"twice": 1, "twice": {"last": 2}})", R"({"twice":{"last":2}})"},
      {R"(["\u00e9\ud83d\ude00\n\/\u0000"])", R"(["é😀\n/\u0000"])"},
      {std::string(513, '[') + std::string(513, ']'), std::string(513, '[') + std::string(513, ']')},
  };
  for (const auto& [text, written] : rows) {
    EXPECT_EQ(jsonText(parsedJson(text)), written);
    EXPECT_EQ(parsedJson(written), parsedJson(text)) << text;
  }
  for (const auto& text :
       {std::string(), std::string("1 2"), std::string("[1e999]"), std::string("[\"\xff\"]"),
        std::string("{\"a\":1,}"), std::string(514, '[') + std::string(514, ']'),
        std::string(200'000, '[') + std::string(200'000, ']')})
    EXPECT_EQ(jsonText(parsedJson(text)), "null") << text.substr(0, 20);
  const Json odd{{"\xff", std::vector<std::string>{"é", "\xc3"}}, {"no number", std::nan("")}};
  EXPECT_EQ(jsonText(odd, JsonCharacters::ascii), R"({"no number":null,"\ufffd":["\u00e9","\ufffd"]})");
}

TEST(Json, GivesNothingForWhatIsNotThereOrOfAnotherKind) {
  auto value = parsedJson(R"({"a": [18446744073709551615, -1, 1.0, "1", true], "t": "text"})");
  const auto& list = std::as_const(value)["a"];
  EXPECT_EQ(list.element(0).integer(), std::nullopt);
  EXPECT_EQ(list.element(0).unsignedInteger(), 18446744073709551615U);
  EXPECT_NE(list.element(0), list.element(1)) << "the same bits";
  EXPECT_EQ(list.element(1).unsignedInteger(), std::nullopt);
  EXPECT_EQ(list.element(2).integer(), std::nullopt);
  EXPECT_EQ(list.element(2), 1) << "the same number";
  EXPECT_NE(list.element(3), 1);
  EXPECT_NE(list.element(4), 1);
  EXPECT_EQ(list.element(5)["t"].element(0).text(), std::nullopt);
  auto moved = std::move(value["a"]);
  EXPECT_EQ(jsonText(value), R"({"a":null,"t":"text"})");
  moved.append(moved);
  moved = Json(moved.element(5));
  EXPECT_EQ(moved.size(), 5U);
}
