#include "Support/Testing.h"
#include "Workers/SpeechWorker/TranscriptionRequest.h"

using namespace murmel::worker;

// What is refused, and how, the integration tests ask the worker itself. These are the ways to write what is
// not.
TEST(TranscriptionRequest, ReadsTheAudioHoweverTheLineIsWritten) {
  for (
      const char* const line : {
          R"({"id":4,"pcm_s16le_base64":"AAD/fwCA+//+/w==","sample_rate":16000,"language":"de"})",
          R"({ "language" : "de" , "sample_rate" : 16000 , "pcm_s16le_base64" : "AAD/fwCA+//+/w==" , "id" : 4 })",
          R"({"id":4,"pcm_s16le_base64":"AAD\/fwCA+\/\/+\/w==","sample_rate":16000,"language":"de"})",
          R"({"id":4,"pcm_s16le_base64":"\u0041AD/fwCA+//+/w==","sample_rate":16000,"language":"de"})",
          R"({"x":{"pcm_s16le_base64":1},"pcm_s16le_base64":"AAD/fwCA+//+/w==","id":4,"sample_rate":16000,"language":"de"})",
          R"({"x":"pcm_s16le_base64","pcm_s16le_base64":"AAD/fwCA+//+/w==","id":4,"sample_rate":16000,"language":"de"})",
      }) {
    const auto request = TranscriptionRequest::decode(line);
    ASSERT_TRUE(request.has_value()) << line << ": " << request.error().reason;
    EXPECT_EQ(request->id, 4);
    EXPECT_EQ(request->samples, (murmel::PrivateVector<std::int16_t>{0, 32'767, -32'768, -5, -2})) << line;
    EXPECT_EQ(request->hints.language, "de");
  }
}

TEST(TranscriptionRequest, TakesNoAudioForNoSamples) {
  const auto request = TranscriptionRequest::decode(R"({"id":1,"pcm_s16le_base64":"","sample_rate":16000})");
  ASSERT_TRUE(request.has_value());
  EXPECT_TRUE(request->samples.empty());
  EXPECT_EQ(request->hints.language, std::nullopt);
}

TEST(TranscriptionRequest, RefusesALineThatEndsInsideTheAudio) {
  for (const char* const line : {
           R"({"id":1,"sample_rate":16000,"pcm_s16le_base64)",
           R"({"id":1,"sample_rate":16000,"pcm_s16le_base64")",
           R"({"id":1,"sample_rate":16000,"pcm_s16le_base64":)",
           R"({"id":1,"sample_rate":16000,"pcm_s16le_base64":")",
           R"({"id":1,"sample_rate":16000,"pcm_s16le_base64":"AAA=")",
       }) {
    const auto request = TranscriptionRequest::decode(line);
    ASSERT_FALSE(request.has_value()) << line;
    EXPECT_EQ(request.error().reason, "malformed request");
  }
}
