#include "Segmentation/DictationBacklog.h"
#include "Support/Testing.h"

TEST(DictationBacklog, SwitchesWithHysteresisAndCountsTheSwitches) {
  struct Step {
    const char* what;
    double seconds;
    bool slow, changes, behind;
    int revision;
  };
  const std::vector<Step> steps{
      {"exactly ten seconds are not behind", 10.0, false, false, false, 0},
      {"a little more is", 10.01, false, true, true, 1},
      {"staying behind is no news", 14, false, false, true, 1},
      {"between the limits nothing changes", 7, false, false, true, 1},
      {"five seconds are still between", 5.0, false, false, true, 1},
      {"below five it has caught up", 4.99, false, true, false, 2},
      {"coming from below, between the limits is not behind", 9, false, false, false, 2},
      {"a slow request is behind without any backlog", 0, true, true, true, 3},
      {"and caught up when it is over", 0, false, true, false, 4},
  };
  DictationBacklog backlog;
  for (const auto& step : steps) {
    EXPECT_EQ(backlog.update(step.seconds, step.slow), step.changes) << step.what;
    EXPECT_EQ(backlog.behind(), step.behind) << step.what;
    EXPECT_EQ(backlog.revision(), step.revision) << step.what;
  }
  EXPECT_EQ(backlog.maximum(), 14);
  EXPECT_TRUE(backlog.everBehind());
  EXPECT_TRUE(backlog.slowRequestObserved());
}
