#include "Delivery/PasteReceipts.h"
#include "Support/Testing.h"

using Step = PasteReceipts::Step;

TEST(PasteReceipts, DecidesByTheReads) {
  struct Row {
    const char* name;
    std::vector<Duration> reads;
    bool hurried;
    Duration now;
    Step step;
    Duration until;
    std::optional<int> usualReads = 1;
  };
  const Row rows[] = {
      {"nothing read yet", {}, false, 1'999ms, Step::wait, 2s},
      {"nothing read in time", {}, false, 2s, Step::neverRead, 2s},
      {"a hurry does not shorten the wait for the read", {}, true, 500ms, Step::wait, 2s},
      {"a read before the paste proves nothing", {-1ms}, false, 2s, Step::neverRead, 2s},
      {"read, and quiet for too short a time", {10ms}, false, 209ms, Step::wait, 210ms},
      {"read and quiet", {10ms}, false, 210ms, Step::restore, 210ms},
      {"the last read counts", {10ms, 150ms}, false, 300ms, Step::wait, 350ms},
      {"reads may be told out of order", {150ms, 10ms}, false, 300ms, Step::wait, 350ms},
      {"a late read does not prolong it beyond the limit", {1'950ms}, false, 1'999ms, Step::wait, 2s},
      {"a late read is a read", {1'950ms}, false, 2s, Step::restore, 2s},
      {"a hurry shortens the quiet", {10ms}, true, 30ms, Step::restore, 30ms},
      {"a hurry leaves time for the second read", {10ms}, true, 29ms, Step::wait, 30ms},
      {"one that used to read twice is waited for", {10ms}, false, 1s, Step::wait, 1'010ms, 2},
      {"also in a hurry", {10ms}, true, 1s, Step::wait, 1'010ms, 2},
      {"a stranger may do so", {10ms}, false, 1s, Step::wait, 1'010ms, std::nullopt},
      {"but not for ever", {10ms}, false, 1'010ms, Step::restore, 1'010ms, 2},
      {"it has read as often as before", {10ms, 20ms}, false, 220ms, Step::restore, 220ms, 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Instant posted(1h);
    PasteReceipts receipts(posted, row.usualReads);
    for (const auto read : row.reads) receipts.noteRead(posted + read);
    if (row.hurried) receipts.hurry();
    const auto verdict = receipts.verdict(posted + row.now);
    EXPECT_EQ(verdict.step, row.step);
    EXPECT_EQ(verdict.until - posted, row.until);
  }
}
