#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace murmel {

/// Overwrites `bytes` in a way that the compiler does not leave out.
void wipe(std::span<std::uint8_t> bytes) noexcept;

/// Overwrites everything that `text` has allocated, not only what it holds, and leaves it empty.
void wipe(std::string& text) noexcept;

/// Clears the vector registers of this thread. Copies go through them, and what was copied last stays there
/// for as long as the thread has nothing to do.
void wipeVectorRegisters() noexcept;

/// Overwrites what returned functions have left on the stack of this thread, as deep as computing goes.
void wipeStack() noexcept;

}  // namespace murmel
