// Model files that are to be imported: the table of weights and the table of words.

#include "MemoryFile.h"
#include "Require.h"
#include "Workers/ModelImport/TokenTable.h"
#include "Workers/ModelImport/WeightFile.h"

using namespace murmel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // In two parts, as large ones come.
  const std::size_t half = size / 2;
  const MemoryFile first(data, half);
  const MemoryFile second(data + half, size - half);
  const auto weights = import::WeightFile::open({first.path(), second.path()});
  for (const char* name : {"encoder/conv1/weight", "w", ""}) {
    const auto* const found = weights ? weights->find(name) : nullptr;
    if (found == nullptr) continue;
    double count = 1;
    for (const auto length : found->shape) count *= length;
    require(static_cast<double>(found->offset) + 2 * count <= static_cast<double>(size),
            "weights are in their file");
    std::vector<std::uint8_t> bytes(found->count() * 2);
    require(weights->read(found->offset, bytes), "and can be read");
  }
  const MemoryFile whole(data, size);
  (void)import::readTokenTable(whole.path());
  return 0;
}
