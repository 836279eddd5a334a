#include "WorkerProcess/IdleMemory.h"

#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>

#include <malloc.h>
#include <sys/mman.h>

namespace murmel {

void giveBackIdleMemory() {
  ::malloc_trim(0);
  std::ifstream mappings("/proc/self/maps");
  for (std::string line; std::getline(mappings, line);) {
    std::istringstream fields(line);
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    std::string access;
    std::string offset;
    std::string device;
    std::uint64_t file = 0;
    fields >> std::hex >> begin >> dash >> end >> access >> offset >> device >> std::dec >> file;
    // Code of files alone: nobody writes into it, so that nothing is lost. Read-only data may hold what the
    // loader has put in.
    if (fields && access == "r-xp" && file != 0)
      ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
  }
}

}  // namespace murmel
