#pragma once

#include "Support/ShellCommand.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <span>
#include <stdexcept>
#include <string>

namespace murmel {

/// A module of the sound server, unloaded at the end.
class PulseModule {
 public:
  explicit PulseModule(const std::string& arguments) : index_(outputOf("pactl load-module " + arguments)) {}
  ~PulseModule() {
    if (!index_.empty()) succeeds("pactl unload-module " + index_);
  }
  PulseModule(const PulseModule&) = delete;
  PulseModule& operator=(const PulseModule&) = delete;
  void unload() {
    outputOf("pactl unload-module " + index_);
    index_.clear();
  }

 private:
  std::string index_;
};

/// Makes a source the default one for a while.
class DefaultSource {
 public:
  explicit DefaultSource(const std::string& name) : before_(outputOf("pactl get-default-source")) {
    set(name);
  }
  ~DefaultSource() { succeeds("pactl set-default-source " + before_); }
  DefaultSource(const DefaultSource&) = delete;
  DefaultSource& operator=(const DefaultSource&) = delete;
  static void set(const std::string& name) { outputOf("pactl set-default-source " + name); }

 private:
  std::string before_;
};

/// Plays 16-bit stereo samples at 48 kHz into a sink. `write` waits until the player takes them.
class PulsePlayer {
 public:
  explicit PulsePlayer(const std::string& sink)
      : pipe_(::popen(("pacat --playback --raw --rate=48000 --channels=2 --format=s16le -d " + sink).c_str(),
                      "we")) {
    if (pipe_ == nullptr) throw std::runtime_error("no pacat");
  }
  ~PulsePlayer() { ::pclose(pipe_); }
  PulsePlayer(const PulsePlayer&) = delete;
  PulsePlayer& operator=(const PulsePlayer&) = delete;
  void write(std::span<const std::int16_t> samples) {
    std::fwrite(samples.data(), sizeof(std::int16_t), samples.size(), pipe_);
    std::fflush(pipe_);
  }

 private:
  FILE* pipe_;
};

}  // namespace murmel
