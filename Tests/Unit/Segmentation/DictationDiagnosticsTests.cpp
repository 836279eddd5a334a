#include "Segmentation/DictationDiagnostics.h"
#include "Support/Testing.h"

TEST(DictationDiagnostics, EachFigureStandsBehindItsOwnKey) {
  DictationDiagnostics figures;
  figures.duration = 12;
  figures.minimumWindowDB = -std::numeric_limits<double>::infinity();
  figures.leadingLowLevelSeconds = 0.25;
  figures.segmentsBeforeStop = 1;
  figures.completedBeforeStop = 2;
  figures.calibrationBatches = 3;
  figures.empty = 4;
  figures.carried = 5;
  figures.recovered = 6;
  figures.unresolved = 7;
  figures.successorSalvaged = 8;
  figures.abandonedSeconds = 0.1;
  figures.maximumBacklog = 10.01;
  figures.everBehind = true;
  figures.slowRequestObserved = true;
  EXPECT_EQ(figures.notice(LiveInsertionBlock::secureInput, true),
            "dictation_stop duration_seconds=12.0 requests_started_before_stop=1 "
            "segments_completed_before_stop=2 calibration_batches=3 minimum_window_db=-inf "
            "leading_low_level_seconds=0.25 empty=4 carried=5 recovered=6 unresolved=7 "
            "successor_salvaged=8 abandoned_seconds=0.1 maximum_backlog_seconds=10.01 lagged=true "
            "slow_request_observed=true live_blocked=secure_input device_changed=true");
}
