#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"
#include "Recognition/DictationLanguage.h"
#include "Recognition/WorkerRequest.h"
#include "Support/Testing.h"
#include "WorkerProcess/WorkerLimits.h"
#include "WorkerProcess/WorkerMessage.h"

TEST(WorkerMessage, DecodesEveryField) {
  const auto message = WorkerMessage::decode(
      R"( {"id":-3,"extra":[{}],"text":"Привет\n\"!\" 😀","event":"result","mrm_worker_protocol":1,"error_type":"e"} )");
  ASSERT_TRUE(message.has_value());
  EXPECT_EQ(message->protocolVersion, 1);
  EXPECT_EQ(message->event, "result");
  EXPECT_EQ(message->id, -3);
  EXPECT_EQ(message->text->reveal(), "Привет\n\"!\" 😀");
  EXPECT_EQ(message->errorType, "e");
}

TEST(WorkerMessage, SkipsWhatIsNoMessage) {
  for (const char* const line : {
           "",
           "loading 12 %",
           "[]",
           "1",
           "null",
           "{}",
           R"({"event":"ready"})",
           R"({"mrm_worker_protocol":1})",
           R"({"mrm_worker_protocol":"1","event":"ready"})",
           R"({"mrm_worker_protocol":1.5,"event":"ready"})",
           R"({"mrm_worker_protocol":true,"event":"ready"})",
           R"({"mrm_worker_protocol":1,"event":null})",
           R"({"mrm_worker_protocol":1,"event":"ready"}})",
           R"({"mrm_worker_protocol":1,"event":"ready")",
           "{\"mrm_worker_protocol\":1,\"event\":\"\xff\"}",
           R"({"mrm_worker_protocol":99999999999999999999,"event":"ready"})",
       }) {
    EXPECT_FALSE(WorkerMessage::decode(line).has_value()) << line;
  }
}

TEST(WorkerMessage, TakesOptionalFieldsOfAnotherTypeAsAbsent) {
  const auto message =
      WorkerMessage::decode(R"({"mrm_worker_protocol":2,"event":"x","id":"1","text":7,"error_type":null})");
  ASSERT_TRUE(message.has_value());
  EXPECT_EQ(message->protocolVersion, 2);
  EXPECT_FALSE(message->id || message->text || message->errorType);
  const auto huge =
      WorkerMessage::decode(R"({"mrm_worker_protocol":1,"event":"x","id":18446744073709551615})");
  EXPECT_FALSE(huge->id.has_value());
}

TEST(WorkerRequest, IsOneObjectOnOneLine) {
  const CapturedAudio audio{{0x00, 0xFF, 0x10, 0x80, 0x0A}};
  const auto line = encodeWorkerRequest(7, audio, "ru");
  ASSERT_TRUE(line.has_value());
  EXPECT_EQ(line->find('\n'), std::string::npos);
  const auto object = parsedJson(*line);
  EXPECT_EQ(object, (Json{{"id", 7},
                          {"sample_rate", 16000},
                          {"language", "ru"},
                          {"pcm_s16le_base64", base64::encoded(audio.pcm16LE)}}));
}

TEST(WorkerRequest, HasNoLanguageWhenNoneIsForced) {
  const auto object = parsedJson(*encodeWorkerRequest(1, {}, std::nullopt));
  EXPECT_EQ(object, (Json{{"id", 1}, {"sample_rate", 16000}, {"pcm_s16le_base64", ""}}));
}

TEST(WorkerRequest, EscapesOrRefusesAnOddLanguage) {
  EXPECT_EQ(parsedJson(*encodeWorkerRequest(1, {}, "\"},{\n"))["language"], "\"},{\n");
  EXPECT_FALSE(encodeWorkerRequest(1, {}, "\xff").has_value());
  EXPECT_EQ(parsedJson(*encodeWorkerRequest(1, {}, {}, {"Grey, \"Gray\""}))["vocabulary"],
            Json::array({"Grey, \"Gray\""}));
}

TEST(WorkerLimits, ResponseFollowsTheLengthOfTheAudio) {
  const WorkerLimits limits;
  EXPECT_EQ(limits.start, 90s);
  const auto limit = [&](double seconds) { return limits.response(secondsToDuration(seconds)); };
  EXPECT_EQ(limit(0), 45s);
  EXPECT_EQ(limit(1), 45s);
  EXPECT_EQ(limit(7.5), 45s);
  EXPECT_EQ(limit(8), 46s);
  EXPECT_EQ(limit(60), 150s);
  EXPECT_EQ(limit(284), 598s);
  EXPECT_EQ(limit(285), 600s);
  EXPECT_EQ(limit(300), 600s);
  EXPECT_EQ(limit(36'000), 600s);
}

TEST(DictationLanguage, HasTwentyEightDistinctCodesInDisplayOrder) {
  std::string codes;
  std::set<std::string_view> titles;
  for (const auto language : allCases<DictationLanguage>()) {
    codes += std::string(rawValue(language)) + " ";
    titles.insert(title(language));
    EXPECT_EQ(fromRawValue<DictationLanguage>(rawValue(language)), language);
  }
  EXPECT_EQ(codes, "en es fr de it pt ro nl da sv fi hu et lv lt mt pl cs sk sl hr bs ru uk be bg sr el ");
  EXPECT_EQ(titles.size(), 28);
  EXPECT_EQ(fromRawValue<DictationLanguage>("EN"), std::nullopt);
}
