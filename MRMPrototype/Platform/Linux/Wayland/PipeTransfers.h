#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/UniqueDescriptor.h"
#include "Platform/ClipboardSnapshot.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <poll.h>

namespace murmel {

/// Bytes on their way through pipes, many at once and none waiting for another. On one thread, which waits
/// for the descriptors with whatever else it waits for.
class PipeTransfers {
 public:
  /// Nothing when not everything came in time.
  using Received = std::move_only_function<void(std::optional<std::string>)>;

  /// Takes everything that comes until the other end is closed. `group` is for `shorten`.
  void receive(UniqueDescriptor source, std::size_t mostBytes, Instant deadline, const void* group,
               Received done);
  /// Gives `value`, which belongs to `contents`; `done` says whether the reader took all of it. A reader that
  /// takes nothing for long is left.
  void send(UniqueDescriptor target, SharedSnapshot contents, const ClipboardSnapshot::Value& value,
            Instant now, std::move_only_function<void(bool)> done);
  /// What is received for `group` ends at this moment, if it had longer.
  void shorten(const void* group, Instant deadline);

  void addDescriptors(std::vector<pollfd>& descriptors) const;
  /// When there is something to do even if no descriptor is ready.
  [[nodiscard]] std::optional<Instant> nextDeadline() const;
  /// Moves what can be moved without waiting, and gives up what is late. The callbacks may begin new
  /// transfers.
  void serve(Instant now);

 private:
  struct Incoming {
    UniqueDescriptor source;
    std::size_t bytesLeft = 0;
    Instant deadline;
    const void* group = nullptr;
    Received done;
    std::string data{};
  };
  struct Outgoing {
    UniqueDescriptor target;
    SharedSnapshot contents;
    const std::string* data = nullptr;
    std::size_t sent = 0;
    Instant deadline;
    std::move_only_function<void(bool)> done;
  };

  static bool advance(Incoming& transfer, Instant now, bool& complete);
  static bool advance(Outgoing& transfer, Instant now, bool& complete);

  std::vector<Incoming> incoming_;
  std::vector<Outgoing> outgoing_;
};

}  // namespace murmel
