#include "Dictation/KeptRecording.h"

#include "Foundation/Crypto/AesGcm.h"
#include "Foundation/Crypto/Crypto.h"
#include "Foundation/Crypto/Wipe.h"

#include <cstddef>
#include <span>
#include <utility>

namespace murmel {

namespace {

constexpr float fullScale = 32'767;

PrivateVector<float> samplesOf(std::span<const std::uint8_t> pcm16LE) {
  PrivateVector<float> samples(pcm16LE.size() / 2);
  for (std::size_t index = 0; index < samples.size(); ++index) {
    const auto bits = static_cast<std::uint16_t>(pcm16LE[2 * index] | pcm16LE[2 * index + 1] << 8);
    samples[index] = static_cast<float>(static_cast<std::int16_t>(bits)) / fullScale;
  }
  return samples;
}

}  // namespace

KeptRecording::KeptRecording() : key_(crypto::aes256KeySize), usable_(crypto::fillRandom(key_.reveal())) {}

void KeptRecording::append(const PendingCapturedAudio& audio) {
  if (!usable_ || audio.monoSamples.empty()) return;
  auto converted = convertForRecognition(audio);
  auto part = crypto::sealAes256Gcm(key_, converted.pcm16LE);
  wipe(converted.pcm16LE);
  if (part) {
    parts_.push_back(*std::move(part));
  } else {
    usable_ = false;
    parts_.clear();
  }
}

bool KeptRecording::replay(const std::function<void(PendingCapturedAudio)>& take) const {
  for (const auto& part : parts_) {
    const auto opened = crypto::openAes256Gcm(key_, part);
    if (!opened) return false;
    take({samplesOf(opened->reveal()), recognitionSampleRate});
  }
  return true;
}

}  // namespace murmel
