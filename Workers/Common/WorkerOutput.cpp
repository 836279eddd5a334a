#include "Workers/Common/WorkerOutput.h"

#include <fcntl.h>
#include <unistd.h>

namespace murmel::worker {

UniqueDescriptor takeStandardOutput() {
  UniqueDescriptor protocol(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  const UniqueDescriptor nullDevice(::open("/dev/null", O_WRONLY | O_CLOEXEC));
  if (!protocol || !nullDevice || ::dup2(nullDevice.get(), STDOUT_FILENO) < 0 ||
      ::dup2(nullDevice.get(), STDERR_FILENO) < 0) {
    return {};
  }
  return protocol;
}

}  // namespace murmel::worker
