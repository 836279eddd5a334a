#include "Platform/Linux/Wayland/PipeTransfers.h"

#include "Foundation/Async/Executor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace murmel {

namespace {

/// A reader that takes nothing for so long hangs.
constexpr Duration readersPatience = std::chrono::seconds(30);

void neverWait(int descriptor) {
  ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

bool mustWait() {
  return errno == EAGAIN || errno == EINTR;
}

}  // namespace

void PipeTransfers::receive(UniqueDescriptor source, std::size_t mostBytes, Instant deadline,
                            const void* group, Received done) {
  neverWait(source.get());
  incoming_.push_back({std::move(source), mostBytes, deadline, group, std::move(done)});
}

void PipeTransfers::send(UniqueDescriptor target, SharedSnapshot contents,
                         const ClipboardSnapshot::Value& value, Instant now,
                         std::move_only_function<void(bool)> done) {
  neverWait(target.get());
  outgoing_.push_back(
      {std::move(target), std::move(contents), &value.data, 0, now + readersPatience, std::move(done)});
}

void PipeTransfers::shorten(const void* group, Instant deadline) {
  for (auto& transfer : incoming_) {
    if (transfer.group == group) transfer.deadline = std::min(transfer.deadline, deadline);
  }
}

void PipeTransfers::addDescriptors(std::vector<pollfd>& descriptors) const {
  for (const auto& transfer : incoming_) descriptors.push_back({transfer.source.get(), POLLIN, 0});
  for (const auto& transfer : outgoing_) descriptors.push_back({transfer.target.get(), POLLOUT, 0});
}

std::optional<Instant> PipeTransfers::nextDeadline() const {
  std::optional<Instant> next;
  const auto consider = [&next](Instant deadline) { next = next ? std::min(*next, deadline) : deadline; };
  for (const auto& transfer : incoming_) consider(transfer.deadline);
  for (const auto& transfer : outgoing_) consider(transfer.deadline);
  return next;
}

/// True when the transfer is over.
bool PipeTransfers::advance(Incoming& transfer, Instant now, bool& complete) {
  std::array<char, 65'536> piece{};
  while (true) {
    const auto count = ::read(transfer.source.get(), piece.data(), piece.size());
    if (count == 0) {
      complete = true;
      return true;
    }
    if (count < 0) return !mustWait() || now >= transfer.deadline;
    const auto size = static_cast<std::size_t>(count);
    if (size > transfer.bytesLeft) return true;
    transfer.bytesLeft -= size;
    transfer.data.append(piece.data(), size);
  }
}

bool PipeTransfers::advance(Outgoing& transfer, Instant now, bool& complete) {
  while (transfer.sent < transfer.data->size()) {
    const auto count = ::write(transfer.target.get(), transfer.data->data() + transfer.sent,
                               transfer.data->size() - transfer.sent);
    if (count < 0) return !mustWait() || now >= transfer.deadline;
    transfer.sent += static_cast<std::size_t>(count);
    transfer.deadline = now + readersPatience;
  }
  complete = true;
  return true;
}

void PipeTransfers::serve(Instant now) {
  std::vector<Job> finished;
  std::erase_if(incoming_, [&](Incoming& transfer) {
    bool complete = false;
    if (!advance(transfer, now, complete)) return false;
    finished.emplace_back(
        [complete, data = std::move(transfer.data), done = std::move(transfer.done)]() mutable {
          done(complete ? std::optional(std::move(data)) : std::nullopt);
        });
    return true;
  });
  std::erase_if(outgoing_, [&](Outgoing& transfer) {
    bool complete = false;
    if (!advance(transfer, now, complete)) return false;
    // The reader learns by it that this was all.
    transfer.target.reset();
    finished.emplace_back([complete, done = std::move(transfer.done)]() mutable { done(complete); });
    return true;
  });
  for (auto& job : finished) job();
}

}  // namespace murmel
