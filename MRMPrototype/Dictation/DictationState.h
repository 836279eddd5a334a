#pragma once

#include "Delivery/TextDeliveryResult.h"

#include <string>
#include <utility>

namespace murmel {

/// What the user sees of a dictation. Equal when case and message are equal.
class DictationState {
 public:
  enum class Case {
    error,
    warning,
    ready,
    listening,
    listeningBehind,
    transcribing,
    success,
    insertedAndClipboardRestored,
    insertedAndTranscriptKept,
    insertionSentClipboardChanged,
    copied,
  };

  DictationState(Case which = Case::ready) : case_(which) {}
  static DictationState error(std::string message) { return {Case::error, std::move(message)}; }
  static DictationState warning(std::string message) { return {Case::warning, std::move(message)}; }
  /// The state that shows how a delivery ended.
  static DictationState delivered(TextDeliveryResult result);

  [[nodiscard]] Case which() const { return case_; }
  /// The text of the status line.
  [[nodiscard]] std::string title() const;

  [[nodiscard]] bool isRecording() const {
    return case_ == Case::listening || case_ == Case::listeningBehind;
  }
  /// Recording or transcribing: no new dictation can start.
  [[nodiscard]] bool isBusy() const { return isRecording() || case_ == Case::transcribing; }

  friend bool operator==(const DictationState&, const DictationState&) = default;

 private:
  DictationState(Case which, std::string message) : case_(which), message_(std::move(message)) {}

  Case case_;
  std::string message_;
};

}  // namespace murmel
