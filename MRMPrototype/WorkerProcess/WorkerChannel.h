#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Text/LineSplitter.h"
#include "Product/MRMError.h"
#include "WorkerProcess/WorkerCancellation.h"
#include "WorkerProcess/WorkerMessage.h"

#include <cstddef>
#include <string_view>

namespace murmel {

/// The line-wise conversation with a worker over two descriptors, which stay the caller's. Every call blocks
/// its thread, at most until its limit or the cancellation.
class WorkerChannel {
 public:
  /// A longer line is dropped as it arrives: far above the words of ten minutes, far below what hurts.
  static constexpr std::size_t longestLine = 1 << 20;

  /// `input` is the worker's standard input, `output` its standard output; -1 where there is none. Makes both
  /// non-blocking. `clock` and `cancellation` must outlive the channel.
  WorkerChannel(int input, int output, const Clock& clock, const WorkerCancellation& cancellation);

  /// The next message; lines that are none are skipped. Errors, all `workerFailed`: "worker output
  /// unavailable", "worker response timed out", "worker exited unexpectedly", "worker response unavailable".
  Result<WorkerMessage> readMessage(Duration limit);

  /// Writes `line` and a line feed, and keeps what the worker says meanwhile for `readMessage`. Errors, all
  /// `workerFailed`: "worker input unavailable" without an input or when the worker has closed it, "worker
  /// response timed out" when the worker does not take the line within the limit.
  Result<void> writeLine(std::string_view line, Duration limit);

  /// What is held of the worker's output. For tests.
  [[nodiscard]] std::size_t bufferedBytes() const { return lines_.held(); }

 private:
  enum class Received { bytes, nothing, end, failure };

  Received receive();
  Result<void> write(std::string_view bytes, Instant deadline);
  [[nodiscard]] bool hasRoom() const { return lines_.waiting() <= longestLine; }

  int input_;
  int output_;
  const Clock& clock_;
  const WorkerCancellation& cancellation_;
  LineSplitter lines_{longestLine};
  bool ended_ = false;
};

}  // namespace murmel
