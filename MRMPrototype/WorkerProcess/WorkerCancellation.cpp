#include "WorkerProcess/WorkerCancellation.h"

#include <cerrno>
#include <system_error>

#include <sys/eventfd.h>

namespace murmel {

WorkerCancellation::WorkerCancellation() : event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!event_) throw std::system_error(errno, std::generic_category(), "eventfd");
}

void WorkerCancellation::cancel() {
  cancelled_ = true;
  ::eventfd_write(event_.get(), 1);
}

}  // namespace murmel
