#include "Platform/Linux/PulseAudio/PulseRecording.h"

#include <array>
#include <cmath>
#include <cstring>
#include <utility>

#include <pulse/error.h>
#include <pulse/subscribe.h>
#include <pulse/timeval.h>

namespace murmel {

namespace {

// Short enough for a lively meter and a short wait at the stop, long enough to cost next to nothing.
constexpr pa_usec_t fragmentLength = 20 * PA_USEC_PER_MSEC;
constexpr std::uint32_t serverDefault = static_cast<std::uint32_t>(-1);
// The sink that the server makes up when there is no sound hardware. Its monitor is no microphone.
constexpr const char* madeUpSink = "auto_null";

PulseRecording* recordingOf(void* pointer) {
  return static_cast<PulseRecording*>(pointer);
}

}  // namespace

std::unique_ptr<PulseRecording> PulseRecording::open(const PulseServer& server, Handlers handlers) {
  auto connection = PulseConnection::open(server);
  if (!connection) return nullptr;
  std::unique_ptr<PulseRecording> recording(new PulseRecording(std::move(connection), std::move(handlers)));
  const auto onState = [self = recording.get()](pa_context_state_t state) { self->contextChanged(state); };
  if (!recording->connection_->connect(onState)) {
    const PulseConnection::Lock lock(*recording->connection_);
    recording->lost(AudioInputError::noServer);
  }
  return recording;
}

PulseRecording::PulseRecording(std::unique_ptr<PulseConnection> connection, Handlers handlers)
    : handlers_(std::move(handlers)), connection_(std::move(connection)) {}

PulseRecording::~PulseRecording() {
  connection_->stopThread();
  if (!stream_) return;
  // Disconnecting reports a change of state on this thread, to nobody.
  pa_stream_set_state_callback(stream_.get(), nullptr, nullptr);
  pa_stream_set_read_callback(stream_.get(), nullptr, nullptr);
  pa_stream_set_moved_callback(stream_.get(), nullptr, nullptr);
  pa_stream_set_suspended_callback(stream_.get(), nullptr, nullptr);
  pa_stream_disconnect(stream_.get());
}

void PulseRecording::contextChanged(pa_context_state_t state) {
  if (state == PA_CONTEXT_READY) {
    watchDefaultSource();
    askForDefaultSource();
  } else if (!PA_CONTEXT_IS_GOOD(state)) {
    lost(AudioInputError::noServer);
  }
}

void PulseRecording::watchDefaultSource() {
  const auto onEvent = [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
    recordingOf(self)->askForDefaultSource();
  };
  pa_context_set_subscribe_callback(connection_->context(), onEvent, this);
  PulseConnection::release(
      pa_context_subscribe(connection_->context(), PA_SUBSCRIPTION_MASK_SERVER, nullptr, nullptr));
}

void PulseRecording::askForDefaultSource() {
  const auto onInfo = [](pa_context*, const pa_server_info* server, void* self) {
    recordingOf(self)->defaultSourceIs(server != nullptr ? server->default_source_name : nullptr);
  };
  PulseConnection::release(pa_context_get_server_info(connection_->context(), onInfo, this));
}

void PulseRecording::defaultSourceIs(const char* name) {
  const std::string source = name != nullptr ? name : "";
  if (!defaultSource_.empty()) {
    // Usually the server moves the stream along, but that is a matter of its configuration.
    if (std::exchange(defaultSource_, source) != source) changed();
    return;
  }
  if (source.empty()) return lost(AudioInputError::noDevice);
  defaultSource_ = source;
  const auto onInfo = [](pa_context*, const pa_source_info* info, int end, void* self) {
    if (end < 0) recordingOf(self)->lost(AudioInputError::noDevice);
    if (end == 0) recordingOf(self)->sourceIs(*info);
  };
  PulseConnection::release(
      pa_context_get_source_info_by_name(connection_->context(), source.c_str(), onInfo, this));
}

void PulseRecording::sourceIs(const pa_source_info& source) {
  if (stream_) return;
  const bool madeUp =
      source.monitor_of_sink_name != nullptr && std::strcmp(source.monitor_of_sink_name, madeUpSink) == 0;
  const pa_sample_spec spec{PA_SAMPLE_FLOAT32NE, source.sample_spec.rate, source.sample_spec.channels};
  if (madeUp || pa_sample_spec_valid(&spec) == 0) return lost(AudioInputError::noDevice);
  // A monitor without a sound card is a virtual cable that somebody has laid on purpose.
  const bool isMonitor = source.monitor_of_sink != PA_INVALID_INDEX && source.card != PA_INVALID_INDEX;
  format_ = {static_cast<double>(spec.rate), spec.channels, isMonitor};
  // Somebody may want to record what he hears; it is worth a word only where there is nothing else.
  if (format_.hearsSpeakers) {
    const auto onSource = [](pa_context*, const pa_source_info* other, int end, void* self) {
      if (end == 0 && other->monitor_of_sink == PA_INVALID_INDEX)
        recordingOf(self)->format_.hearsSpeakers = false;
    };
    PulseConnection::release(pa_context_get_source_info_list(connection_->context(), onSource, this));
  }
  stream_.reset(pa_stream_new(connection_->context(), "Dictation", &spec, &source.channel_map));
  if (!stream_) return lost(AudioInputError::notStarted);
  pa_stream_set_state_callback(
      stream_.get(), [](pa_stream*, void* self) { recordingOf(self)->streamChanged(); }, this);
  pa_stream_set_read_callback(
      stream_.get(), [](pa_stream*, std::size_t, void* self) { recordingOf(self)->readFragments(); }, this);
  pa_stream_set_moved_callback(
      stream_.get(), [](pa_stream*, void* self) { recordingOf(self)->changed(); }, this);
  pa_stream_set_suspended_callback(
      stream_.get(),
      [](pa_stream* stream, void* self) {
        if (pa_stream_is_suspended(stream) > 0) recordingOf(self)->changed();
      },
      this);
  const pa_buffer_attr buffer{
      .maxlength = serverDefault,
      .tlength = serverDefault,
      .prebuf = serverDefault,
      .minreq = serverDefault,
      .fragsize = static_cast<std::uint32_t>(pa_usec_to_bytes(fragmentLength, &spec)),
  };
  // Without a name of a source: a stream that asked for one is not moved when the default changes.
  const auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_AUTO_TIMING_UPDATE);
  if (pa_stream_connect_record(stream_.get(), nullptr, &buffer, flags) < 0) lost(AudioInputError::notStarted);
}

void PulseRecording::streamChanged() {
  const auto state = pa_stream_get_state(stream_.get());
  if (PA_STREAM_IS_GOOD(state) || state == PA_STREAM_UNCONNECTED) return;
  const bool noSource = pa_context_errno(connection_->context()) == PA_ERR_NOENTITY;
  lost(noSource ? AudioInputError::noDevice : AudioInputError::notStarted);
}

void PulseRecording::readFragments() {
  static constexpr std::array<float, 1'024> silence{};
  while (pa_stream_readable_size(stream_.get()) > 0) {
    const void* data = nullptr;
    std::size_t bytes = 0;
    if (pa_stream_peek(stream_.get(), &data, &bytes) < 0) return lost(AudioInputError::notStarted);
    if (bytes == 0) return;
    const std::size_t samples = bytes / sizeof(float);
    if (data != nullptr) {
      handOver({static_cast<const float*>(data), samples});
    } else {
      // A hole, where the server lost samples: silence keeps everything else in its place.
      const std::size_t piece = silence.size() / format_.channelCount * format_.channelCount;
      for (std::size_t done = 0; done < samples; done += piece)
        handOver(std::span(silence).first(std::min(piece, samples - done)));
    }
    pa_stream_drop(stream_.get());
  }
}

void PulseRecording::handOver(std::span<const float> interleaved) {
  if (interleaved.empty()) return;
  handlers_.onFragment(interleaved, format_);
  framesHandedOver_ += interleaved.size() / format_.channelCount;
  if (!begun_) begin(format_);
  if (drainTarget_ && framesHandedOver_ >= *drainTarget_) endDrain();
}

void PulseRecording::begin(Outcome outcome) {
  begun_ = outcome.has_value();
  if (!std::exchange(answered_, true)) handlers_.onBegun(outcome);
}

void PulseRecording::changed() {
  if (begun_) handlers_.onConfigurationChange();
}

void PulseRecording::lost(AudioInputError error) {
  if (begun_) {
    changed();
  } else {
    begin(std::unexpected(error));
  }
  endDrain();
}

void PulseRecording::drain(std::chrono::milliseconds limit) {
  {
    const PulseConnection::Lock lock(*connection_);
    if (!stream_ || pa_stream_get_state(stream_.get()) != PA_STREAM_READY) return;
    // Where the device stands now: its own buffer and everything on the way to us.
    const auto onTiming = [](pa_stream* stream, int, void* self) { recordingOf(self)->drainTo(stream); };
    PulseConnection::release(pa_stream_update_timing_info(stream_.get(), onTiming, this));
  }
  std::unique_lock lock(drainMutex_);
  drainEnded_.wait_for(lock, limit, [this] { return drained_; });
}

void PulseRecording::drainTo(pa_stream* stream) {
  pa_usec_t latency = 0;
  int negative = 0;
  if (pa_stream_get_latency(stream, &latency, &negative) < 0) {
    // A server that cannot tell: one more fragment, which began before now.
    drainTarget_ = framesHandedOver_ + 1;
    return;
  }
  // The monitor of a sink is ahead of what is heard.
  if (negative != 0) latency = 0;
  const double seconds = static_cast<double>(latency) / static_cast<double>(PA_USEC_PER_SEC);
  drainTarget_ = framesHandedOver_ + static_cast<std::uint64_t>(std::ceil(seconds * format_.sampleRate));
  if (framesHandedOver_ >= *drainTarget_) endDrain();
}

void PulseRecording::endDrain() {
  {
    const std::lock_guard lock(drainMutex_);
    drained_ = true;
  }
  drainEnded_.notify_one();
}

}  // namespace murmel
