#pragma once

#include <sys/prctl.h>

namespace murmel {

/// For as long as this lives, other processes of the user may see which executable this process runs, and
/// with that could look into it: services grant things by the executable, and ask for it while somebody
/// connects. Not while there are words in memory.
class VisibleExecutable {
 public:
  VisibleExecutable() : before_(::prctl(PR_GET_DUMPABLE)) {
    if (before_ == 0) ::prctl(PR_SET_DUMPABLE, 1);
  }
  ~VisibleExecutable() {
    if (before_ == 0) ::prctl(PR_SET_DUMPABLE, 0);
  }
  VisibleExecutable(const VisibleExecutable&) = delete;
  VisibleExecutable& operator=(const VisibleExecutable&) = delete;

 private:
  int before_;
};

}  // namespace murmel
