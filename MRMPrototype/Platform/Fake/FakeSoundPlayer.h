#pragma once

#include "Platform/SoundPlayer.h"

#include <vector>

namespace murmel {

/// Remembers what should have been heard.
class FakeSoundPlayer final : public SoundPlayer {
 public:
  void play(SystemSound sound) override { played_.push_back(sound); }
  [[nodiscard]] const std::vector<SystemSound>& played() const { return played_; }

 private:
  std::vector<SystemSound> played_;
};

}  // namespace murmel
