#pragma once

#include "Segmentation/AudioConversion.h"
#include "Segmentation/DictationSession.h"

#include <memory>
#include <vector>

namespace murmel {

/// The plainest session: keeps the whole recording and recognises it in one request at the end. Whatever
/// target length or callback for phrases is asked for, there is one phrase.
class SingleSegmentSession final : public DictationSession {
 public:
  SingleSegmentSession(DictationSessionConfiguration configuration, AudioConversion convert);

  void append(PendingCapturedAudio audio) override;
  Task<Result<DictationSessionResult>> finish() override;
  [[nodiscard]] DictationDiagnostics diagnostics() const override;

 private:
  [[nodiscard]] CapturedAudio convertedRecording() const;
  Task<Result<TranscriptionResult>> recognise(CapturedAudio audio);

  DictationSessionConfiguration configuration_;
  AudioConversion convert_;
  std::vector<PendingCapturedAudio> recording_;
  DictationDiagnostics diagnostics_;
};

class SingleSegmentSessionFactory final : public DictationSessionFactory {
 public:
  explicit SingleSegmentSessionFactory(AudioConversion convert) : convert_(std::move(convert)) {}
  std::unique_ptr<DictationSession> make(DictationSessionConfiguration configuration) override;

 private:
  AudioConversion convert_;
};

}  // namespace murmel
