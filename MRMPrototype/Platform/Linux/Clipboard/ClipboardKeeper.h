#pragma once

#include "Foundation/Async/Clock.h"
#include "Platform/ClipboardSnapshot.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace murmel {

/// Somebody outside this process who knows what we serve on the clipboard, and serves it after our end,
/// however that comes. Any thread.
class ClipboardKeeper {
 public:
  virtual ~ClipboardKeeper() = default;
  /// From now on we serve this, as the owner since that moment of the server's time.
  virtual void keep(SharedSnapshot contents, std::uint32_t ownedSince) = 0;
  /// The clipboard is not ours any more.
  virtual void forget() = 0;
  /// Lets the keeper serve from now on. True when it does; waits at most for `limit`.
  virtual bool handOver(Duration limit) = 0;
};

/// What is told to the process that keeps, as bytes.
struct ClipboardOrder {
  enum class Kind : char {
    keep = 'K',
    take = 'T',  ///< serve what was kept; answered with one byte, 'y' or 'n'
  };
  Kind kind = Kind::keep;
  std::uint32_t ownedSince = 0;
  ClipboardSnapshot contents{};  ///< of `keep`

  [[nodiscard]] std::string encoded() const;
};

/// Every order begins with this many bytes, which say how many follow.
inline constexpr std::size_t clipboardOrderHeadSize = 13;

/// How many bytes follow this head; nothing when it is none.
std::optional<std::uint64_t> clipboardOrderBodySize(std::string_view head);
/// Nothing when the bytes do not fit together.
std::optional<ClipboardOrder> decodedClipboardOrder(std::string_view head, std::string_view body);

}  // namespace murmel
