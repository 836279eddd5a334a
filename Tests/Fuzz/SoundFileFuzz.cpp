// Recordings from anywhere.

#include "Audio/AudioFileReader.h"
#include "MemoryFile.h"
#include "Require.h"

#include <cmath>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const murmel::MemoryFile file(data, size);
  auto reader = murmel::AudioFileReader::open(file.path());
  if (!reader) {
    require(!reader.error().contains('\n'), "an error is one line");
    return 0;
  }
  require(std::isfinite(reader->sampleRate()) && reader->sampleRate() > 0, "there is a rate");
  require(reader->channelCount() > 0, "there is a channel");
  constexpr std::size_t frames = 512;
  constexpr int enough = 64;
  std::vector<float> output(frames * reader->channelCount());
  for (int turn = 0; turn < enough; ++turn) {
    const auto count = reader->read(output);
    if (!count || *count == 0) break;
    require(*count <= frames, "no more than there is room for");
  }
  return 0;
}
