#include "Segmentation/DictationDiagnostics.h"

#include "Foundation/Log.h"

#include <string_view>

namespace murmel {

namespace {

class Line {
 public:
  void add(std::string_view key, double value) { add(key, shortestDecimal(value)); }
  void add(std::string_view key, std::int64_t value) { add(key, std::to_string(value)); }
  void add(std::string_view key, bool value) { add(key, std::string_view(value ? "true" : "false")); }
  void add(std::string_view key, std::string_view value) {
    text_.append(" ").append(key).append("=").append(value);
  }
  [[nodiscard]] std::string take() { return std::move(text_); }

 private:
  std::string text_ = "dictation_stop";
};

}  // namespace

std::string DictationDiagnostics::notice(std::optional<LiveInsertionBlock> blocked,
                                         bool deviceChanged) const {
  Line line;
  line.add("duration_seconds", duration);
  line.add("requests_started_before_stop", segmentsBeforeStop);
  line.add("segments_completed_before_stop", completedBeforeStop);
  line.add("calibration_batches", calibrationBatches);
  line.add("minimum_window_db", minimumWindowDB);
  line.add("leading_low_level_seconds", leadingLowLevelSeconds);
  line.add("empty", empty);
  line.add("carried", carried);
  line.add("recovered", recovered);
  line.add("unresolved", unresolved);
  line.add("successor_salvaged", successorSalvaged);
  line.add("abandoned_seconds", abandonedSeconds);
  line.add("maximum_backlog_seconds", maximumBacklog);
  line.add("lagged", everBehind);
  line.add("slow_request_observed", slowRequestObserved);
  line.add("live_blocked", blocked ? rawValue(*blocked) : std::string_view("none"));
  line.add("device_changed", deviceChanged);
  return line.take();
}

}  // namespace murmel
