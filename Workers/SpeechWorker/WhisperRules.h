#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace murmel::worker {

/// How much of its window the encoder looks at, in its own steps of 20 ms; 0 for all 30 s. The whole window
/// costs four times what a sentence needs; too little of it makes the decoder say things twice.
int whisperWindow(std::size_t samples);

/// More tokens than speech of this length has in any language written with an alphabet. The library has no
/// room for more than 220.
int whisperTokenLimit(std::size_t samples);

/// Fewer tokens than the speech in these samples (16 kHz, mono) has in any language: the model ends its text
/// now and then when a sentence ends, whatever comes after.
int whisperTokenLeast(std::span<const std::int16_t> samples);

/// Where text begins to say again what it has just said, as a model does that has lost its way: three or more
/// words twice in a row, or one or two words four times; npos when it does not. The same letters over and
/// over are nothing that anybody has said even once: of these, where they begin.
std::size_t repetitionIn(std::string_view text);

/// Without blanks around it; empty when it only describes sounds: "[BLANK_AUDIO]", "(wind blowing)",
/// "*music*", "♪".
std::string withoutSoundDescriptions(std::string_view text);

}  // namespace murmel::worker
