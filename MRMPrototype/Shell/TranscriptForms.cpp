#include "Shell/TranscriptForms.h"

#include "Foundation/Json/Json.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <fmt/core.h>

namespace murmel {

namespace {

/// What a reader takes in at a glance: two lines of so many bytes.
constexpr std::size_t subtitleLine = 42;
constexpr std::size_t subtitleLines = 2;

double milliseconds(double seconds) {
  return std::round(seconds * 1'000) / 1'000;
}

std::string onOneLine(const Json& object) {
  return jsonText(object) + '\n';
}

Json phraseObject(const RecognisedPiece& phrase) {
  return {{"start", milliseconds(phrase.span.begin)},
          {"end", milliseconds(phrase.span.end)},
          {"text", phrase.text.reveal()}};
}

std::string asJson(const Transcript& transcript) {
  Json segments = Json::array();
  for (const auto& piece : transcript.pieces) segments.append(phraseObject(piece));
  Json missing = Json::array();
  for (const auto& span : transcript.missing)
    missing.append(Json{{"start", milliseconds(span.begin)}, {"end", milliseconds(span.end)}});
  return onOneLine({{"file", transcript.name},
                    {"seconds", milliseconds(transcript.seconds)},
                    {"complete", transcript.missing.empty() && !transcript.interrupted},
                    {"text", transcript.text.reveal()},
                    {"segments", std::move(segments)},
                    {"missing", std::move(missing)}});
}

std::string subtitleTime(double seconds, char decimalMark) {
  const auto total = static_cast<std::int64_t>(std::llround(std::max(seconds, 0.0) * 1'000));
  return fmt::format("{:02}:{:02}:{:02}{}{:03}", total / 3'600'000, total / 60'000 % 60, total / 1'000 % 60,
                     decimalMark, total % 1'000);
}

/// The words in lines that fit; a word that does not fit a line has one of its own.
std::vector<std::string> lines(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const auto space = std::min(text.find(' ', at), text.size());
    const auto word = text.substr(at, space - at);
    at = space + 1;
    if (word.empty()) continue;
    if (lines.empty() || lines.back().size() + 1 + word.size() > subtitleLine) {
      lines.push_back(word);
    } else {
      lines.back() += ' ' + word;
    }
  }
  return lines;
}

/// A phrase is shown in as many parts as it needs, each for its share of the time.
std::string asSubtitles(const Transcript& transcript, bool isVtt) {
  std::string result = isVtt ? "WEBVTT\n\n" : "";
  std::size_t number = 0;
  for (const auto& piece : transcript.pieces) {
    const auto all = lines(piece.text.reveal());
    std::size_t bytes = 0;
    for (const auto& line : all) bytes += line.size();
    const double perByte =
        (piece.span.end - piece.span.begin) / static_cast<double>(std::max<std::size_t>(bytes, 1));
    double begin = piece.span.begin;
    for (std::size_t at = 0; at < all.size(); at += subtitleLines) {
      std::string shown;
      double end = begin;
      for (std::size_t line = at; line < std::min(at + subtitleLines, all.size()); ++line) {
        shown += all[line] + '\n';
        end += perByte * static_cast<double>(all[line].size());
      }
      const char mark = isVtt ? '.' : ',';
      result += fmt::format("{}\n{} --> {}\n{}\n", ++number, subtitleTime(begin, mark),
                            subtitleTime(end, mark), shown);
      begin = end;
    }
  }
  return result;
}

}  // namespace

std::string formatted(const Transcript& transcript, TranscriptForm form, bool withName) {
  switch (form) {
    case TranscriptForm::json:
      return asJson(transcript);
    case TranscriptForm::srt:
      return asSubtitles(transcript, false);
    case TranscriptForm::vtt:
      return asSubtitles(transcript, true);
    case TranscriptForm::text:
      break;
  }
  if (transcript.text.empty()) return {};
  return (withName ? transcript.name + ": " : "") + transcript.text.reveal() + '\n';
}

std::string formattedPhrase(const RecognisedPiece& phrase, TranscriptForm form) {
  if (form == TranscriptForm::json) return onOneLine(phraseObject(phrase));
  return std::string(text::trimmed(phrase.text.reveal())) + '\n';
}

std::string clockTime(double seconds) {
  const auto tenths = static_cast<std::int64_t>(std::llround(std::max(seconds, 0.0) * 10));
  const auto whole = tenths / 10;
  if (whole < 3'600) return fmt::format("{}:{:02}.{}", whole / 60, whole % 60, tenths % 10);
  return fmt::format("{}:{:02}:{:02}.{}", whole / 3'600, whole / 60 % 60, whole % 60, tenths % 10);
}

std::string described(const std::vector<SpokenSpan>& spans) {
  std::string text;
  for (const auto& span : spans)
    text += (text.empty() ? "" : ", ") + clockTime(span.begin) + "–" + clockTime(span.end);
  return text;
}

}  // namespace murmel
