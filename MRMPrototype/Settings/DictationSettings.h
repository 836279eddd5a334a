#pragma once

#include "Foundation/Async/Clock.h"
#include "History/HistoryRetention.h"
#include "Recognition/DictationLanguage.h"
#include "Refinement/SmartLocalModel.h"
#include "Refinement/SmartRefinementRoutingMode.h"

#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// The switches that a dictation reads. Main thread; each call gives the value of the moment.
class DictationSettings {
 public:
  virtual ~DictationSettings() = default;

  [[nodiscard]] virtual bool playFeedbackSound() const = 0;
  /// A recording into which nobody has spoken for so long ends by itself; 0: never.
  [[nodiscard]] virtual double forgottenRecordingMinutes() const = 0;
  /// Escape throws a recording away.
  [[nodiscard]] virtual bool cancelsWithEscape() const = 0;
  /// The sound of a dictation that failed or was cancelled stays in memory for another try.
  [[nodiscard]] virtual bool keepFailedRecordings() const = 0;
  [[nodiscard]] virtual bool processWhileRecording() const = 0;
  [[nodiscard]] virtual bool insertWhileRecording() const = 0;
  [[nodiscard]] virtual bool removeFillerWords() const = 0;
  /// Names of marks and line breaks stand for them.
  [[nodiscard]] virtual bool spokenCommands() const { return false; }
  [[nodiscard]] virtual bool smartFormatting() const = 0;
  [[nodiscard]] virtual SmartRefinementRoutingMode smartRefinementRouting() const = 0;
  [[nodiscard]] virtual SmartLocalModel smartLocalModel() const = 0;
  [[nodiscard]] virtual bool historyEnabled() const = 0;
  /// One "term = replacement" a line.
  [[nodiscard]] virtual std::string personalVocabulary() const = 0;
  /// The two-letter code that recognition is forced to, if any.
  [[nodiscard]] virtual std::optional<std::string> workerLanguageCode() const = 0;
  /// The languages that are spoken; empty: any of them.
  [[nodiscard]] virtual std::vector<DictationLanguage> spokenLanguages() const { return {}; }
  /// How long the recogniser stays loaded without a dictation; zero is for ever.
  [[nodiscard]] virtual Duration recogniserIdleLimit() const { return std::chrono::minutes(10); }
  /// The language as a history entry shows it.
  [[nodiscard]] virtual std::string historyLanguageLabel() const = 0;
};

}  // namespace murmel
