#pragma once

#include "Delivery/TextInsertion.h"

#include <functional>
#include <string>

namespace murmel {

/// Delivery without a desktop: the text is handed to a printer, phrases as they come. There is no application
/// to paste into and no clipboard to restore.
class StandardOutputDelivery final : public TextInsertion {
 public:
  explicit StandardOutputDelivery(std::function<void(const std::string&)> print);

  void beginDictationSession() override {}
  void endDictationSession() override {}
  Task<std::optional<TextDeliveryResult>> finishPasteCleanup() override;
  Task<TextDeliveryResult> insertOrCopy(SpokenText text, bool liveOnly) override;
  Task<bool> insertLiveSegment(SpokenText phrase) override;
  [[nodiscard]] std::optional<LiveInsertionBlock> lastBlock() const override { return std::nullopt; }
  [[nodiscard]] std::optional<TextDeliveryResult> lastResult() const override;
  void writePrivateText(const SpokenText& text) override;
  [[nodiscard]] Registration onPasteSettled(std::function<void(PasteSettlement)>) override { return {}; }

 private:
  std::function<void(const std::string&)> print_;
};

}  // namespace murmel
