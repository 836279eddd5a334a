#include "NaturalSpeech.h"
#include "Segmentation/SegmentCutter.h"

#include <algorithm>
#include <limits>
#include <iostream>

#include <gtest/gtest.h>

using namespace murmel;

namespace {

constexpr std::size_t second = 16'000;
constexpr double clean = std::numeric_limits<double>::infinity();

template <class Take>
void forEachSecond(const JoinedSpeech& speech, Take take) {
  const std::span<const float> samples(speech.samples);
  for (std::size_t at = 0; at < samples.size(); at += second)
    take(samples.subspan(at, std::min(second, samples.size() - at)));
}

TEST(Exp, Cutter) {
  for (const char* language : {"en", "ru"}) {
    const auto speech = NaturalSpeech::load(language, 1.5, 400);
    const auto joined = JoinedSpeech::join(speech, 0.3, 1.2, 1);
    for (const double snr : {clean, 20.0, 10.0, 5.0, 0.}) {
      const auto noisy = snr == clean ? joined : joined.withNoise(snr, 2);
      for (const double target : {3.0, 15.0, (double)clean}) {
        SegmentCutter cutter(target);
        int loud = 0, n = 0, none = 0, doubt = 0; double longest = 0; double noneS = 0;
        std::int64_t pos = 0;
        auto take = [&](const CutSegment& s) {
          pos += std::ssize(s.audio.monoSamples); ++n; none += s.evidence == SpeechEvidence::none; doubt += s.evidence == SpeechEvidence::doubtful;
          longest = std::max(longest, s.seconds);
          if (s.evidence == SpeechEvidence::none) noneS += s.seconds;
          if (pos < std::ssize(joined.samples)) { if (joined.quietAround(pos) == 0) {++loud; std::cout << "  loud at " << (double)pos / 16000 << "\n"; }}
        };
        forEachSecond(noisy, [&](std::span<const float> b) {
          for (auto& s : cutter.append({std::vector<float>(b.begin(), b.end()), 16000.})) take(s);
        });
        if (auto s = cutter.flush()) take(*s);
        std::cout << language << " snr " << snr << " target " << target << " n " << n << " loud " << loud << " none " << none << " (" << noneS << " s) doubtful " << doubt << " longest " << longest << "\n";
      }
    }
  }
}

}  // namespace
