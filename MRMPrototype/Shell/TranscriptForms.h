#pragma once

#include "Segmentation/DictationSession.h"

#include <string>
#include <vector>

namespace murmel {

/// The form in which a transcript leaves the program.
enum class TranscriptForm { text, json, srt, vtt };

/// What became of one recording.
struct Transcript {
  std::string name;  ///< of the file; empty for a microphone
  double seconds = 0;
  SpokenText text = {};
  std::vector<RecognisedPiece> pieces = {};
  std::vector<SpokenSpan> missing = {};
  bool interrupted = false;  ///< it ends before the recording does
};

/// The transcript in `form`, with its last line feed; nothing at all where nobody spoke and only text is
/// wanted. `withName`: the text is one of several. Pure.
std::string formatted(const Transcript& transcript, TranscriptForm form, bool withName);

/// One phrase of a recording that still goes on: its text, or an object on a line. Pure.
std::string formattedPhrase(const RecognisedPiece& phrase, TranscriptForm form);

/// Hours are written only where there are some: "4:07.5". Pure.
std::string clockTime(double seconds);
/// "0:12.0–0:27.4, …" Pure.
std::string described(const std::vector<SpokenSpan>& spans);

}  // namespace murmel
