#pragma once

#include "Platform/ProcessMemory.h"

namespace murmel {

/// Lets memory that runs out end a recording, not the process with the words in it. Keeps as much aside as
/// it takes to recognise and deliver what was said; to be given back when that begins.
class RecordingMemory {
 public:
  /// `memory` outlives this.
  explicit RecordingMemory(ProcessMemory& memory) : memory_(memory) {}

  /// Whether the largest piece that a recording at `sampleRate` (Hz; 0: not known yet) may ask for at once
  /// would be refused, or what is kept aside. To be asked before the recording and often while it goes on:
  /// afterwards somebody's words are in a half-moved buffer.
  [[nodiscard]] bool isShort(double sampleRate);
  /// The recording has ended.
  void release() { aside_.reset(); }

 private:
  ProcessMemory& memory_;
  double sampleRate_ = 0;  ///< for which there is enough aside
  Registration aside_;
};

}  // namespace murmel
