#include "NaturalSpeech.h"
#include "Segmentation/PhrasePauseDetector.h"
#include "Segmentation/SegmentLevels.h"
#include <cmath>
#pragma GCC diagnostic ignored "-Wsign-conversion"

#include <algorithm>
#include <iostream>

#include <gtest/gtest.h>

using namespace murmel;

namespace {

std::vector<PhrasePause> pauses(const JoinedSpeech& speech) {
  PhrasePauseDetector detector(NaturalSpeech::sampleRate);
  std::vector<PhrasePause> all;
  constexpr std::size_t batch = 16'000;
  const std::span<const float> samples(speech.samples);
  for (std::size_t at = 0; at < samples.size(); at += batch) {
    const auto found = detector.append(samples.subspan(at, std::min(batch, samples.size() - at)));
    all.insert(all.end(), found.begin(), found.end());
  }
  return all;
}

TEST(Exp, Stats) {
  for (const char* language : {"en", "ru"}) {
    const auto speech = NaturalSpeech::load(language, 1.5, 400);
    const auto joined = JoinedSpeech::join(speech, 0.3, 1.2, 1);
    for (const double snr : {99.0, 20.0, 10.0, 5.0, 0.}) {
      const auto noisy = snr == 99.0 ? joined : joined.withNoise(snr, 2);
      const auto found = pauses(noisy);
      for (auto kind : {PhrasePause::Kind::phrase, PhrasePause::Kind::breath}) {
        std::vector<std::int64_t> cuts;
        int loud = 0, shortQuiet = 0;
        for (const auto& pause : found) {
          if (pause.kind != kind) continue;
          cuts.push_back(pause.cut);
          const auto around = joined.quietAround(pause.cut);
          if (around == 0) ++loud;
          if (around < 3200) ++shortQuiet;
        }
        int n = 0, hit = 0, n2 = 0, hit2 = 0;
        for (const auto& gap : joined.gaps) {
          const double s = double(gap.end - gap.begin) / 16000;
          if (s >= 0.7) { ++n; hit += joined.isFound(gap, cuts); }
          else { ++n2; hit2 += joined.isFound(gap, cuts); }
        }
        std::cout << language << " snr " << snr << (kind == PhrasePause::Kind::phrase ? " phrase " : " breath ")
                  << joined.samples.size() / 16000 << " s cuts " << cuts.size() << " loud " << loud << " short " << shortQuiet
                  << " long gaps " << hit << "/" << n << " short gaps " << hit2 << "/" << n2 << "\n";
      }
    }
  }
}


TEST(Exp, Quietest) {
  for (const char* language : {"en", "ru"}) {
    const auto speech = NaturalSpeech::load(language, 1.5, 400);
    const auto joined = JoinedSpeech::join(speech, 0.3, 1.2, 1);
    for (const double snr : {99.0, 20.0, 10.0, 5.0, 0.}) {
      const auto noisy = snr == 99.0 ? joined : joined.withNoise(snr, 2);
      FrameLevelMeter meter(16000);
      const auto frames = meter.append(noisy.samples);
      for (auto [from, to] : {std::pair{15., 50.}, {3., 20.}, {3., 12.}, {7.5,25.}}) {
        int n = 0, loud = 0, shortQ = 0;
        std::size_t start = 0;
        while (start + std::size_t(to * 50) <= frames.size()) {
          const auto a = start + std::size_t(from * 50);
          const auto cut = a + quietestCut(std::span(frames).subspan(a, std::size_t((to - from) * 50)));
          const auto q = joined.quietAround(meter.firstSample(cut));
          ++n; loud += q == 0; shortQ += q < 3200;
          start = cut;
        }
        std::cout << language << " snr " << snr << " " << from << ".." << to << " n " << n << " loud " << loud << " short " << shortQ << "\n";
      }
      // evidence: prompts alone
      double least = 99; int none = 0, doubtful = 0, n = 0;
      for (std::size_t g = 0; g + 1 < joined.gaps.size(); ++g) {
        const auto a = meter.frameOf(joined.gaps[g].begin), b = meter.frameOf(joined.gaps[g + 1].begin);
        std::span<const FrameLevel> f = std::span(frames).subspan(a, b - a);
        const auto e = speechEvidence(f);
        ++n; none += e == SpeechEvidence::none; doubtful += e == SpeechEvidence::doubtful;
        std::vector<double> l; for (auto& x : f) if (!x.digitalZero) l.push_back(x.db);
        std::sort(l.begin(), l.end());
        least = std::min(least, l[l.size() - 4] - l[l.size() / 10]);
      }
      std::cout << language << " snr " << snr << " evidence none " << none << " doubtful " << doubtful << " of " << n << " least " << least << "\n";
    }
  }
  // steady noises
  JoinedSpeech flat; flat.samples.assign(16000 * 600, 0.01f);
  for (int i = 0; i < 16000 * 600; ++i) flat.samples[std::size_t(i)] = 0.1f * std::sin(float(i) * 0.3f) ;
  const auto noise = flat.withNoise(-40, 3);
  FrameLevelMeter meter(16000);
  const auto frames = meter.append(noise.samples);
  for (std::size_t len : {20u, 50u, 200u, 1000u, 2500u}) {
    double most = 0; int n = 0, none = 0;
    for (std::size_t at = 0; at + len <= frames.size(); at += len) {
      std::span<const FrameLevel> f = std::span(frames).subspan(at, len);
      ++n; none += speechEvidence(f) == SpeechEvidence::none;
      std::vector<double> l; for (std::size_t i = 2; i < f.size(); ++i) l.push_back((f[i].db+f[i-1].db+f[i-2].db)/3);
      std::sort(l.begin(), l.end());
      most = std::max(most, l[l.size() - 4] - l[l.size() / 10]);
    }
    std::cout << "noise len " << len << " none " << none << "/" << n << " most " << most << "\n";
  }
}

}  // namespace
