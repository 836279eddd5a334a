#pragma once

#include "Storage/DictationHistory.h"
#include "Storage/DictationSettings.h"

namespace murmel {

/// The settings as they are before anybody has changed one.
class DefaultSettings final : public DictationSettings {
 public:
  [[nodiscard]] bool playFeedbackSound() const override { return true; }
  [[nodiscard]] bool processWhileRecording() const override { return true; }
  [[nodiscard]] bool insertWhileRecording() const override { return false; }
  [[nodiscard]] bool removeFillerWords() const override { return false; }
  [[nodiscard]] bool smartFormatting() const override { return false; }
  [[nodiscard]] SmartRefinementRoutingMode smartRefinementRouting() const override {
    return SmartRefinementRoutingMode::automaticByLanguage;
  }
  [[nodiscard]] SmartLocalModel smartLocalModel() const override { return SmartLocalModel::gemma4E2B; }
  [[nodiscard]] bool historyEnabled() const override { return false; }
  [[nodiscard]] HistoryRetention historyRetention() const override { return HistoryRetention::forever; }
  [[nodiscard]] std::string personalVocabulary() const override { return {}; }
  [[nodiscard]] std::optional<std::string> workerLanguageCode() const override { return std::nullopt; }
  [[nodiscard]] std::string historyLanguageLabel() const override { return "Automatic"; }
};

class NoHistory final : public DictationHistory {
 public:
  void add(HistoryEntry) override {}
  void prune(HistoryRetention, WallTime) override {}
};

}  // namespace murmel
