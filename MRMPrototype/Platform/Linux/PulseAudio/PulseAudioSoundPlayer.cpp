#include "Platform/Linux/PulseAudio/PulseAudioSoundPlayer.h"

#include "Platform/Linux/PulseAudio/PulseConnection.h"
#include "Platform/Linux/PulseAudio/SystemSoundWave.h"

#include <list>
#include <utility>
#include <vector>

#include <pulse/rtclock.h>
#include <pulse/stream.h>
#include <pulse/timeval.h>

namespace murmel {

namespace {

constexpr pa_sample_spec cueSpec{PA_SAMPLE_FLOAT32NE, 48'000, 1};
// A cue that comes later than this says something wrong.
constexpr pa_usec_t latestStart = 500 * PA_USEC_PER_MSEC;
constexpr pa_usec_t bufferLength = 40 * PA_USEC_PER_MSEC;

}  // namespace

/// One connection and what plays on it. When the connection breaks, a new one takes its place.
class PulseAudioSoundPlayer::Connection {
 public:
  explicit Connection(const PulseServer& server) : pulse_(PulseConnection::open(server)) {
    if (!pulse_) return;
    usable_ = pulse_->connect([this](pa_context_state_t state) {
      if (state == PA_CONTEXT_READY) startWaiting();
    });
  }
  ~Connection() {
    if (pulse_) pulse_->stopThread();
    for (auto& cue : playing_) {
      pa_stream_set_state_callback(cue.stream, nullptr, nullptr);
      pa_stream_disconnect(cue.stream);
      pa_stream_unref(cue.stream);
    }
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  [[nodiscard]] bool usable() const {
    if (!usable_) return false;
    const PulseConnection::Lock lock(*pulse_);
    return PA_CONTEXT_IS_GOOD(pulse_->state()) != 0;
  }

  void play(SystemSound sound) {
    const PulseConnection::Lock lock(*pulse_);
    if (pulse_->state() == PA_CONTEXT_READY) {
      start(sound);
    } else {
      waiting_.push_back({sound, pa_rtclock_now() + latestStart});
    }
  }

 private:
  struct Waiting {
    SystemSound sound;
    pa_usec_t until;
  };
  struct Cue {
    Connection* owner;
    pa_stream* stream;
    std::vector<float> wave;
  };

  // Under the lock, all of them.
  void startWaiting() {
    for (const auto& [sound, until] : std::exchange(waiting_, {})) {
      if (pa_rtclock_now() <= until) start(sound);
    }
  }

  void start(SystemSound sound) {
    pa_stream* stream = pa_stream_new(pulse_->context(), "Cue", &cueSpec, nullptr);
    if (stream == nullptr) return;
    auto& cue = playing_.emplace_back(Cue{this, stream, systemSoundWave(sound, cueSpec.rate)});
    pa_stream_set_state_callback(
        stream, [](pa_stream*, void* pointer) { changed(*static_cast<Cue*>(pointer)); }, &cue);
    const auto bytes = static_cast<std::uint32_t>(pa_usec_to_bytes(bufferLength, &cueSpec));
    const pa_buffer_attr buffer{.maxlength = static_cast<std::uint32_t>(-1),
                                .tlength = bytes,
                                .prebuf = 0,
                                .minreq = static_cast<std::uint32_t>(-1),
                                .fragsize = static_cast<std::uint32_t>(-1)};
    if (pa_stream_connect_playback(stream, nullptr, &buffer, PA_STREAM_ADJUST_LATENCY, nullptr, nullptr) < 0)
      finish(cue);
  }

  static void changed(Cue& cue) {
    const auto state = pa_stream_get_state(cue.stream);
    if (state == PA_STREAM_READY) {
      const auto size = cue.wave.size() * sizeof(float);
      pa_stream_write(cue.stream, cue.wave.data(), size, nullptr, 0, PA_SEEK_RELATIVE);
      const auto onDrained = [](pa_stream*, int, void* pointer) {
        auto& drained = *static_cast<Cue*>(pointer);
        drained.owner->finish(drained);
      };
      PulseConnection::release(pa_stream_drain(cue.stream, onDrained, &cue));
    } else if (!PA_STREAM_IS_GOOD(state) && state != PA_STREAM_UNCONNECTED) {
      cue.owner->finish(cue);
    }
  }

  void finish(Cue& cue) {
    pa_stream_set_state_callback(cue.stream, nullptr, nullptr);
    pa_stream_disconnect(cue.stream);
    pa_stream_unref(cue.stream);
    playing_.remove_if([&cue](const Cue& other) { return &other == &cue; });
  }

  std::vector<Waiting> waiting_;
  std::list<Cue> playing_;  // a list: the callbacks keep their addresses
  std::unique_ptr<PulseConnection> pulse_;
  bool usable_ = false;
};

PulseAudioSoundPlayer::PulseAudioSoundPlayer(PulseServer server) : server_(std::move(server)) {}

PulseAudioSoundPlayer::~PulseAudioSoundPlayer() = default;

void PulseAudioSoundPlayer::play(SystemSound sound) {
  if (!connection_ || !connection_->usable()) {
    connection_.reset();
    connection_ = std::make_unique<Connection>(server_);
  }
  if (connection_->usable()) connection_->play(sound);
}

}  // namespace murmel
