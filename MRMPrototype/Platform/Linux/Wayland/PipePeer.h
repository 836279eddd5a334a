#pragma once

#include <sys/types.h>

namespace murmel {

/// The process that reads from this pipe, as far as /proc shows it: 0 when none is seen. `likely` is looked
/// at first, which is quick; looking through all processes takes some milliseconds. The answer of `likely` 0
/// is nobody's in particular.
pid_t readerOfPipe(int pipe, pid_t likely);

/// Whether it can be seen what that process has open. Some forbid it.
bool showsItsDescriptors(pid_t process);

}  // namespace murmel
