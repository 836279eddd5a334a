#include "Foundation/Json/Json.h"
#include "Shell/TranscriptForms.h"
#include "Support/Testing.h"

namespace {

Transcript spoken() {
  Transcript transcript{.name = "a \"b\".wav", .seconds = 3'725.5};
  transcript.text = SpokenText("One two. Three");
  transcript.pieces = {{{0.25, 2}, SpokenText("One two.")}, {{3'723.1, 3'725.0004}, SpokenText("Three")}};
  return transcript;
}

TEST(TranscriptForms, EachIsWhatItsReadersExpect) {
  auto transcript = spoken();
  EXPECT_EQ(formatted(transcript, TranscriptForm::text, false), "One two. Three\n");
  EXPECT_EQ(formatted(transcript, TranscriptForm::text, true), "a \"b\".wav: One two. Three\n");
  EXPECT_EQ(formatted(transcript, TranscriptForm::srt, false),
            "1\n00:00:00,250 --> 00:00:02,000\nOne two.\n\n2\n01:02:03,100 --> 01:02:05,000\nThree\n\n");
  EXPECT_TRUE(formatted(transcript, TranscriptForm::vtt, false)
                  .starts_with("WEBVTT\n\n1\n00:00:00.250 --> 00:00:02.000\nOne two.\n\n2\n"));

  const auto object = parsedJson(formatted(transcript, TranscriptForm::json, false));
  EXPECT_EQ(object["file"], transcript.name);
  EXPECT_EQ(object["segments"].element(1)["end"], 3'725.0);
  EXPECT_EQ(object["complete"], true);
  transcript.missing = {{2, 3.5}};
  EXPECT_EQ(parsedJson(formatted(transcript, TranscriptForm::json, false))["complete"], false);
  EXPECT_EQ(described({{2, 3.5}, {3'600, 3'661.25}}), "0:02.0–0:03.5, 1:00:00.0–1:01:01.3");
  EXPECT_EQ(formatted(Transcript{.name = "silence"}, TranscriptForm::text, true), "");
}

TEST(TranscriptForms, ALongPhraseIsShownInPartsThatFillItsTime) {
  Transcript transcript;
  std::string text;
  for (int word = 0; word < 40; ++word) text += "word ";
  transcript.pieces = {{{10, 30}, SpokenText(text)}};
  const auto subtitles = formatted(transcript, TranscriptForm::srt, false);
  EXPECT_TRUE(subtitles.starts_with("1\n00:00:10,000 --> 00:00:")) << subtitles;
  EXPECT_NE(subtitles.find("\n3\n"), std::string::npos);
  EXPECT_NE(subtitles.find("--> 00:00:30,000\n"), std::string::npos) << subtitles;
}

}  // namespace
