#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"
#include "Workers/ModelImport/NumberFormats.h"
#include "Workers/ModelImport/TokenTable.h"
#include "Workers/ModelImport/WhisperConversion.h"

using namespace murmel::import;

TEST(ModelImport, TurnsEveryHalfIntoANumberAndBack) {
  for (std::uint32_t bits = 0; bits <= 0xFFFF; ++bits) {
    const float value = fromHalf(static_cast<std::uint16_t>(bits));
    EXPECT_TRUE(std::isnan(value) || toHalf(value) == bits) << bits;
  }
  const float tie = fromHalf(0x3C00) + 0x1p-11F;  // between 1 and the next, and between that and its next
  EXPECT_EQ(toHalf(tie), 0x3C00);
  EXPECT_EQ(toHalf(tie + 0x1p-10F), 0x3C02);
  EXPECT_EQ(toHalf(65'519), 0x7BFF);
  EXPECT_EQ(toHalf(1e9F), 0x7C00);
}

TEST(ModelImport, RefusesWeightsThatAreCutOrAbsurd) {
  const TemporaryFolder folder;
  const auto file = folder.path() / "weights";
  const std::string head("\6\0\0\0\x0c\0WhisperSpec\0\3\0\0\0\1\0\0\0", 26);
  const std::string vector = head + std::string("\2\0a\0\1\2\0\0\0\4\4\0\0\0\0\x3c\0\x3c", 18);
  const auto opens = [&](const std::string& content) {
    std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
    return WeightFile::open({file}).has_value();
  };
  ASSERT_TRUE(opens(vector));
  for (std::size_t size = 0; size < vector.size(); ++size)
    EXPECT_FALSE(opens(vector.substr(0, size))) << size;
  EXPECT_FALSE(opens(head + std::string("\2\0a\0\1\2\0\0\x7f\4\4\0\0\0\0\x3c\0\x3c", 18)));
  // Readable, but no speech model: nothing is left behind.
  ASSERT_TRUE(opens(vector));
  {
    ModelWriter output(folder.path() / "model");
    EXPECT_FALSE(writeWhisperModel(*WeightFile::open({file}), {}, WeightForm::q8, output).has_value());
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST(ModelImport, MakesThePublishedFiles) {
  const char* const place = std::getenv("MURMEL_WHISPER_WEIGHTS");
  if (place == nullptr)
    GTEST_SKIP() << "MURMEL_WHISPER_WEIGHTS names no folder with the parts of the weights";
  const std::filesystem::path folder(place);
  const auto weights = WeightFile::open({folder / "model.bin.part1", folder / "model.bin.part2"});
  const auto words = readTokenTable(folder / "tokenizer.json");
  ASSERT_TRUE(weights.has_value() && words.has_value());
  const TemporaryFolder made;
  for (const auto& [form, digest] :
       {std::pair(WeightForm::float16, "60ed5bc3dd14eea856493d334349b405782ddcaf0028d4b5df4088345fba2efe"),
        std::pair(WeightForm::q8, "c577b9a86e7e048a0b7eada054f4dd79a56bbfa911fbdacf900ac5b567cbb7d9")}) {
    ModelWriter output(made.path() / "model");
    ASSERT_TRUE(writeWhisperModel(*weights, *words, form, output).has_value());
    const auto finished = output.finish(digest);
    EXPECT_TRUE(finished.has_value()) << finished.error();
  }
}
