#include "NaturalSpeech.h"

#include "Support/ShellCommand.h"
#include "Support/Testing.h"

#include <cstring>
#include <sstream>

namespace murmel {

namespace {

constexpr std::size_t samplesPerByte = 2;  // of G.722 at 64 kbit/s
constexpr double quietDB = -30;

/// The package links its folder under shorter names.
std::vector<std::filesystem::path> files(const std::string& language) {
  std::istringstream lines(outputOf("find /usr/share/asterisk/sounds/" + language +
                                    "_* -maxdepth 1 -name '*.g722' | LC_ALL=C sort"));
  std::vector<std::filesystem::path> found;
  for (std::string line; std::getline(lines, line);) found.emplace_back(line);
  return found;
}

/// All files through one run of the decoder: they follow each other in one stream.
std::vector<float> decode(const std::string& files) {
  const auto bytes = bytesFrom("cat " + files + " | ffmpeg -v error -f g722 -i - -f f32le -ac 1 -ar 16000 -");
  std::vector<float> samples(bytes.size() / sizeof(float));
  std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
  return samples;
}

/// "name: words" a line; digits, tones and abbreviations are not plain words.
std::map<std::string, std::string> plainTranscripts(const std::string& language) {
  const std::string package = "asterisk-core-sounds-" + language;
  std::istringstream lines(
      outputOf("zcat /usr/share/doc/" + package + "/core-sounds-" + language + ".txt.gz"));
  std::map<std::string, std::string> found;
  for (std::string line; std::getline(lines, line);) {
    const auto colon = line.find(": ");
    if (colon == std::string::npos || line.find_first_of("0123456789[]()/") != std::string::npos) continue;
    found[line.substr(0, colon)] = line.substr(colon + 2);
  }
  EXPECT_FALSE(found.empty()) << "install " << package;
  return found;
}

double power(const float* begin, const float* end) {
  double sum = 0;
  for (auto sample = begin; sample != end; ++sample) sum += static_cast<double>(*sample * *sample);
  return sum / static_cast<double>(end - begin);
}

}  // namespace

NaturalSpeech NaturalSpeech::load(const std::string& language, double leastSeconds, std::size_t most,
                                  Transcripts transcripts) {
  NaturalSpeech speech;
  std::map<std::string, std::string> known;
  if (transcripts == Transcripts::needed) known = plainTranscripts(language);
  std::string coded;
  std::vector<std::size_t> lengths;
  for (const auto& path : files(language)) {
    const auto size = static_cast<std::size_t>(std::filesystem::file_size(path));
    if (static_cast<double>(size * samplesPerByte) < leastSeconds * sampleRate) continue;
    const auto transcript = known.find(path.stem().string());
    if (transcripts == Transcripts::needed && transcript == known.end()) continue;
    speech.transcripts.push_back(transcript == known.end() ? "" : transcript->second);
    coded += path.string() + " ";
    lengths.push_back(size * samplesPerByte);
    if (lengths.size() == most) break;
  }
  EXPECT_FALSE(lengths.empty()) << "install asterisk-core-sounds-" << language << "-g722";
  const auto samples = decode(coded);
  std::size_t position = 0;
  for (const auto length : lengths) {
    if (position + length > samples.size()) break;
    const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(position);
    speech.prompts.emplace_back(begin, begin + static_cast<std::ptrdiff_t>(length));
    position += length;
  }
  EXPECT_EQ(speech.prompts.size(), lengths.size()) << "ffmpeg did not decode the prompts";
  return speech;
}

JoinedSpeech JoinedSpeech::join(const NaturalSpeech& speech, double leastGap, double mostGap, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> gapSeconds(leastGap, mostGap);
  JoinedSpeech joined;
  auto& samples = joined.samples;
  auto addSilence = [&] {
    const auto count = static_cast<std::size_t>(gapSeconds(random) * NaturalSpeech::sampleRate);
    samples.resize(samples.size() + count);
    // Whole steps, so that each belongs to one prompt.
    samples.resize((samples.size() + step - 1) / step * step);
    joined.quiet.resize(samples.size() / step, true);
  };
  addSilence();
  for (const auto& prompt : speech.prompts) {
    std::vector<double> levels;
    for (std::size_t at = 0; at + step <= prompt.size(); at += step)
      levels.push_back(10 * std::log10(power(&prompt[at], &prompt[at] + step) + 1e-12));
    const double loudest = *std::ranges::max_element(levels);
    for (const double level : levels) joined.quiet.push_back(level < loudest + quietDB);
    samples.insert(samples.end(), prompt.begin(),
                   prompt.begin() + static_cast<std::ptrdiff_t>(levels.size() * step));
    const auto begin = static_cast<std::int64_t>(samples.size());
    addSilence();
    joined.gaps.push_back({begin, static_cast<std::int64_t>(samples.size())});
  }
  joined.gaps.pop_back();  // the end is no gap
  return joined;
}

JoinedSpeech JoinedSpeech::withNoise(double decibels, unsigned seed) const {
  std::mt19937 random(seed);
  std::normal_distribution<float> white;
  std::vector<float> noise(samples.size());
  // Leaky integrators of different lengths add up to a spectrum that falls with the frequency.
  std::array<float, 3> state{};
  constexpr std::array<float, 3> pole{0.997F, 0.963F, 0.57F};
  constexpr std::array<float, 3> gain{0.099F, 0.297F, 1.053F};
  for (auto& sample : noise) {
    const float drive = white(random);
    sample = 0.185F * drive;
    for (std::size_t index = 0; index < state.size(); ++index) {
      state[index] = pole[index] * state[index] + gain[index] * drive;
      sample += state[index];
    }
  }
  const double speechPower = power(samples.data(), samples.data() + samples.size());
  const double noisePower = power(noise.data(), noise.data() + noise.size());
  const auto scale = static_cast<float>(std::sqrt(speechPower / noisePower * std::pow(10, -decibels / 10)));
  auto noisy = *this;
  for (std::size_t index = 0; index < noise.size(); ++index) noisy.samples[index] += scale * noise[index];
  return noisy;
}

std::int64_t JoinedSpeech::quietAround(std::int64_t sample) const {
  const auto size = static_cast<std::int64_t>(quiet.size());
  auto begin = sample / step;
  if (begin >= size || !quiet[static_cast<std::size_t>(begin)]) return 0;
  auto end = begin;
  while (begin > 0 && quiet[static_cast<std::size_t>(begin - 1)]) --begin;
  while (end < size && quiet[static_cast<std::size_t>(end)]) ++end;
  return (end - begin) * step;
}

bool JoinedSpeech::isFound(const Gap& gap, const std::vector<std::int64_t>& cuts) const {
  auto begin = gap.begin / step;
  auto end = gap.end / step;
  while (begin > 0 && quiet[static_cast<std::size_t>(begin - 1)]) --begin;
  while (end < static_cast<std::int64_t>(quiet.size()) && quiet[static_cast<std::size_t>(end)]) ++end;
  return std::ranges::any_of(cuts, [&](auto cut) { return cut >= begin * step && cut < end * step; });
}

}  // namespace murmel
