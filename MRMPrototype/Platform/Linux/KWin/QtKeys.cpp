#include "Platform/Linux/KWin/QtKeys.h"

#include "Platform/KeyModifiers.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

constexpr int firstFunctionKey = 0x0100'0030;

constexpr std::pair<xkb_keysym_t, int> namedKeys[] = {
    {XKB_KEY_Escape, qtEscape},    {XKB_KEY_Tab, 0x0100'0001},           {XKB_KEY_BackSpace, 0x0100'0003},
    {XKB_KEY_Return, 0x0100'0004}, {XKB_KEY_Insert, 0x0100'0006},        {XKB_KEY_Delete, 0x0100'0007},
    {XKB_KEY_Pause, 0x0100'0008},  {XKB_KEY_Print, 0x0100'0009},         {XKB_KEY_Home, 0x0100'0010},
    {XKB_KEY_End, 0x0100'0011},    {XKB_KEY_Left, 0x0100'0012},          {XKB_KEY_Up, 0x0100'0013},
    {XKB_KEY_Right, 0x0100'0014},  {XKB_KEY_Down, 0x0100'0015},          {XKB_KEY_Prior, 0x0100'0016},
    {XKB_KEY_Next, 0x0100'0017},   {XKB_KEY_Scroll_Lock, 0x0100'0026},   {XKB_KEY_Menu, 0x0100'0055},
    {XKB_KEY_Help, 0x0100'0058},   {XKB_KEY_XF86AudioPlay, 0x0100'0080},
};

std::optional<int> plainKey(xkb_keysym_t symbol) {
  if (symbol >= XKB_KEY_F1 && symbol <= XKB_KEY_F35)
    return firstFunctionKey + static_cast<int>(symbol - XKB_KEY_F1);
  const auto* named = std::ranges::find(namedKeys, symbol, &std::pair<xkb_keysym_t, int>::first);
  if (named != std::end(namedKeys)) return named->second;
  // The others by the character that they write, as a capital.
  const auto character = xkb_keysym_to_utf32(xkb_keysym_to_upper(symbol));
  constexpr std::uint32_t space = 0x20;
  return character >= space ? std::optional(static_cast<int>(character)) : std::nullopt;
}

}  // namespace

std::optional<int> qtKey(xkb_keysym_t symbol, std::uint64_t modifiers) {
  auto key = plainKey(symbol);
  if (!key) return std::nullopt;
  for (const auto& [flag, bit] : {std::pair{keyModifier::shift, 0x0200'0000},
                                  {keyModifier::control, 0x0400'0000},
                                  {keyModifier::option, 0x0800'0000},
                                  {keyModifier::command, 0x1000'0000}}) {
    if ((modifiers & flag) != 0) *key |= bit;
  }
  return key;
}

}  // namespace murmel
