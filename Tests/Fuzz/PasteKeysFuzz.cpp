// The user's own table of paste keys.

#include "Delivery/PasteChordTable.h"
#include "Require.h"

#include <algorithm>
#include <cstdint>

using namespace murmel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view lines(reinterpret_cast<const char*>(data), size);
  PasteChordTable table;
  const auto count = static_cast<std::size_t>(std::ranges::count(lines, '\n')) + 1;
  for (const auto& invalid : table.addUserLines(lines))
    require(invalid.number >= 1 && invalid.number <= count, "an invalid line is one of them");
  const auto before = table.method("XTerm", "xterm");
  table.addUserLines("# nothing\n\n");
  require(table.method("XTerm", "xterm") == before, "lines without a rule change nothing");
  table.addUserLines("XTerm = Ctrl+Shift+V\n");
  require(table.method("xterm", "").chord == PasteChord::controlShiftV, "the last line wins");
  return 0;
}
