#include "Audio/WaveFileReader.h"
#include "Foundation/UniqueDescriptor.h"
#include "Support/TemporaryFolder.h"
#include "Support/WaveBytes.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace murmel;
using ::testing::HasSubstr;

namespace {

class WaveFileReaderTest : public ::testing::Test {
 protected:
  std::expected<WaveFileReader, std::string> open(const WaveBytes& wave) {
    return WaveFileReader::open(folder.write("test.wav", wave.bytes()));
  }
  /// Every sample of the file, read in pieces of `framesAtOnce`.
  static std::vector<float> samples(WaveFileReader& reader, std::size_t framesAtOnce = 3) {
    std::vector<float> all;
    std::vector<float> piece(framesAtOnce * reader.format().channelCount);
    while (true) {
      const auto frames = reader.read(piece);
      EXPECT_TRUE(frames.has_value());
      if (!frames || *frames == 0) return all;
      const auto count = static_cast<std::ptrdiff_t>(*frames * reader.format().channelCount);
      all.insert(all.end(), piece.begin(), piece.begin() + count);
    }
  }

  TemporaryFolder folder;
};

WaveBytes plain(WaveBytes::Format format) {
  WaveBytes wave;
  wave.header().format(format);
  return wave;
}

}  // namespace

TEST_F(WaveFileReaderTest, ReadsEveryKindOfSample) {
  struct Row {
    const char* what;
    WaveBytes wave;
    std::vector<float> expected;
  };
  const float last24 = 1.0F - 1.0F / 8'388'608;
  const float last16 = 1.0F - 1.0F / 32'768;
  for (auto& row : std::vector<Row>{
           {"8 bits",
            plain({.bits = 8}).data(3).number(0, 1).number(128, 1).number(255, 1),
            {-1, 0, 127.0F / 128}},
           {"16 bits",
            plain({.bits = 16}).data(6).number(0x8000, 2).number(0, 2).number(0x7fff, 2),
            {-1, 0, last16}},
           {"24 bits",
            plain({.bits = 24}).data(9).number(0x800000, 3).number(0x400000, 3).number(0x7fffff, 3),
            {-1, 0.5F, last24}},
           {"32 bits", plain({.bits = 32}).data(8).number(0x80000000, 4).number(0x40000000, 4), {-1, 0.5F}},
           {"float", plain({.tag = 3, .bits = 32}).data(8).float32(-1.5F).float32(0.25F), {-1.5F, 0.25F}},
           {"double", plain({.tag = 3, .bits = 64}).data(16).float64(0.25).float64(-0.5), {0.25F, -0.5F}},
           {"a double that no float can hold",
            plain({.tag = 3, .bits = 64}).data(16).float64(1e300).float64(-1e300),
            {std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest()}},
           {"extensible integers",
            plain({.tag = 0xfffe, .bits = 24, .extensibleTag = 1}).data(3).number(0xc00000, 3),
            {-0.5F}},
           {"extensible float",
            plain({.tag = 0xfffe, .bits = 32, .extensibleTag = 3}).data(4).float32(0.5F),
            {0.5F}}}) {
    auto reader = open(row.wave);
    ASSERT_TRUE(reader.has_value()) << row.what << ": " << reader.error();
    EXPECT_EQ(samples(*reader), row.expected) << row.what;
    reader->rewind();
    EXPECT_EQ(samples(*reader, 1), row.expected) << row.what << ", again";
  }
}

TEST_F(WaveFileReaderTest, KeepsChannelsAndRate) {
  auto reader = open(plain({.channels = 3, .rate = 96'000})
                         .data(12)
                         .number(0x4000, 2)
                         .number(0, 2)
                         .number(0, 2)
                         .number(0, 2)
                         .number(0x4000, 2)
                         .number(0, 2));
  ASSERT_TRUE(reader.has_value()) << reader.error();
  EXPECT_EQ(reader->format().channelCount, 3U);
  EXPECT_EQ(reader->format().sampleRate, 96'000U);
  EXPECT_EQ(reader->frameCount(), 2U);
  EXPECT_EQ(samples(*reader), (std::vector{0.5F, 0.0F, 0.0F, 0.0F, 0.5F, 0.0F}));
}

TEST_F(WaveFileReaderTest, TakesTheSamplesThatAreThere) {
  struct Row {
    const char* what;
    WaveBytes wave;
    std::uint64_t frames;
  };
  const auto stereo = plain({.channels = 2});
  for (auto& row : std::vector<Row>{
           {"a data chunk that promises more", WaveBytes(stereo).data(4'000).number(0, 8), 2},
           {"a size that was never known", WaveBytes(stereo).data(WaveBytes::unknownSize).number(0, 8), 2},
           {"sizes that were never filled in",
            WaveBytes().header(0).format({.channels = 2}).data(0).number(0, 8), 2},
           {"half a frame at the end", WaveBytes(stereo).data(7).number(0, 7), 1},
           {"a chunk after the samples",
            WaveBytes(stereo).data(8).number(0, 8).text("LIST").number(4, 4).text("INFO"), 2},
           {"chunks before the samples, one of odd size",
            WaveBytes()
                .header()
                .text("junk")
                .number(3, 4)
                .number(0, 4)
                .format({.channels = 2})
                .text("fact")
                .number(4, 4)
                .number(2, 4)
                .data(8)
                .number(0, 8),
            2},
           {"a format chunk longer than ours",
            WaveBytes()
                .header()
                .text("fmt ")
                .number(18, 4)
                .number(1, 2)
                .number(2, 2)
                .number(8'000, 4)
                .number(32'000, 4)
                .number(4, 2)
                .number(16, 2)
                .number(0, 2)
                .data(4)
                .number(0, 4),
            1}}) {
    auto reader = open(row.wave);
    ASSERT_TRUE(reader.has_value()) << row.what << ": " << reader.error();
    EXPECT_EQ(reader->frameCount(), row.frames) << row.what;
    EXPECT_EQ(samples(*reader).size(), 2 * row.frames) << row.what;
  }
}

TEST_F(WaveFileReaderTest, SaysWhatIsWrongWithAFile) {
  struct Row {
    const char* reason;
    WaveBytes wave;
  };
  constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
  for (const auto& row : std::vector<Row>{
           {"not a WAV file", WaveBytes()},
           {"not a WAV file", WaveBytes().text("RIFF")},
           {"not a WAV file", WaveBytes().text("OggS________________________________")},
           {"not a WAV file", WaveBytes().text("RIFF").number(4, 4).text("AVI ")},
           {"RF64", WaveBytes().text("RF64").number(4, 4).text("WAVE")},
           {"RIFX", WaveBytes().text("RIFX")},
           {"not a complete WAV file", WaveBytes().header()},
           {"not a complete WAV file", WaveBytes().header().text("junk").number(WaveBytes::unknownSize, 4)},
           {"before their format", WaveBytes().header().data(8).number(0, 8)},
           {"cut short", WaveBytes().header().text("fmt ").number(16, 4).number(1, 2)},
           {"cut short", WaveBytes().header().text("fmt ").number(4, 4).number(1, 4).data(2).number(0, 2)},
           {"no samples", plain({})},
           {"no samples", plain({}).data(0)},
           {"no samples", plain({.bits = 32}).data(3).number(0, 3)},
           {"compressed audio (format 6)", plain({.tag = 6, .bits = 8}).data(1).number(0, 1)},
           {"compressed audio (format 85)", plain({.tag = 85, .bits = 0})},
           {"12 bits", plain({.bits = 12}).data(2).number(0, 2)},
           {"0 bits", plain({.bits = 0}).data(2).number(0, 2)},
           {"floating-point samples of 16 bits", plain({.tag = 3, .bits = 16}).data(2).number(0, 2)},
           {"no channels", plain({.channels = 0}).data(2).number(0, 2)},
           {"0 Hz", plain({.rate = 0}).data(2).number(0, 2)},
           {"4294967295 Hz", plain({.rate = 0xffff'ffff}).data(2).number(0, 2)},
           {"contradicts itself", plain({.channels = 0xffff, .bits = 32}).data(4).number(0, 4)},
           {"test.wav: the sample at 1.000 s is not a number",
            plain({.tag = 3, .channels = 2, .rate = 100, .bits = 64})
                .data(WaveBytes::unknownSize)
                .number(0, 200 * 8)
                .float64(0)
                .float64(notANumber)},
           {"the sample at 0.000 s is not a number",
            plain({.tag = 3, .bits = 32}).data(4).float32(-std::numeric_limits<float>::infinity())}}) {
    const auto reader = open(row.wave);
    ASSERT_FALSE(reader.has_value()) << row.reason;
    EXPECT_THAT(reader.error(), HasSubstr(row.reason));
    EXPECT_THAT(reader.error(), HasSubstr((folder.path() / "test.wav").string() + ": "));
  }
}

TEST_F(WaveFileReaderTest, SaysWhyAFileCannotBeOpened) {
  EXPECT_THAT(WaveFileReader::open(folder.path() / "missing.wav").error(),
              HasSubstr("missing.wav: No such file"));
  EXPECT_THAT(WaveFileReader::open(folder.path()).error(), HasSubstr("not a regular file"));
  const auto pipe = folder.path() / "pipe.wav";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_THAT(WaveFileReader::open(pipe).error(), HasSubstr("not a regular file")) << "and it does not wait";
}

TEST_F(WaveFileReaderTest, AFileThatShrinksWhileItIsReadIsAnError) {
  auto reader =
      WaveFileReader::open(folder.write("test.wav", waveFile16(std::vector<std::int16_t>(100), 16'000)));
  ASSERT_TRUE(reader.has_value());
  std::vector<float> piece(60);
  EXPECT_EQ(reader->read(piece), 60U);
  std::filesystem::resize_file(folder.path() / "test.wav", 150);
  EXPECT_THAT(reader->read(piece).error(), HasSubstr("test.wav: the file became shorter"));
}

/// Whatever the bytes are, the answer is samples or one line of text: cut off everywhere, every byte of the
/// header changed to telling values, and random damage.
TEST_F(WaveFileReaderTest, SurvivesDamage) {
  // Thousands of files, in memory: on a disk each would be waited for.
  const UniqueDescriptor file(::memfd_create("damaged.wav", MFD_CLOEXEC));
  const auto path = "/proc/self/fd/" + std::to_string(file.get());
  const auto readAll = [&](const std::vector<std::uint8_t>& bytes) {
    const auto size = static_cast<ssize_t>(bytes.size());
    ASSERT_EQ(::ftruncate(file.get(), size), 0);
    ASSERT_EQ(::pwrite(file.get(), bytes.data(), bytes.size(), 0), size);
    auto reader = WaveFileReader::open(path);
    if (!reader) {
      EXPECT_EQ(std::ranges::count(reader.error(), '\n'), 0);
      return;
    }
    const auto read = samples(*reader, 500);
    EXPECT_EQ(read.size(), reader->frameCount() * reader->format().channelCount);
    EXPECT_LE(read.size(), bytes.size());
  };
  for (const auto& original :
       {plain({.channels = 2, .bits = 24})
            .text("junk")
            .number(5, 4)
            .number(0, 6)
            .data(60)
            .number(0x1234, 60)
            .bytes(),
        plain({.tag = 0xfffe, .bits = 32, .extensibleTag = 3}).data(64).number(0, 64).bytes()}) {
    for (std::size_t length = 0; length < original.size(); ++length)
      readAll({original.begin(), original.begin() + static_cast<std::ptrdiff_t>(length)});
    for (std::size_t index = 0; index < original.size(); ++index) {
      for (const int value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
        auto bytes = original;
        bytes[index] = static_cast<std::uint8_t>(value);
        readAll(bytes);
      }
    }
    std::minstd_rand random(7);
    for (int round = 0; round < 500; ++round) {
      auto bytes = original;
      for (int change = 0; change < 4; ++change)
        bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
      readAll(bytes);
    }
  }
}
