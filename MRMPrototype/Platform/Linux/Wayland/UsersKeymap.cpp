#include "Platform/Linux/Wayland/UsersKeymap.h"

#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"
#include "Platform/Linux/Keys/PasteKeys.h"

#include <sys/mman.h>

namespace murmel {

std::expected<std::unique_ptr<UsersKeymap>, std::string> UsersKeymap::open(Executor& executor) {
  auto connection = WaylandConnection::open();
  if (!connection) return std::unexpected(connection.error());
  if ((*connection)->seat() == nullptr) return std::unexpected("There is no keyboard.");
  std::unique_ptr<UsersKeymap> keymap(new UsersKeymap(executor, *std::move(connection)));
  // What the seat has is told first, and then the layouts of its keyboard.
  if (!keymap->connection_->roundTrip() || !keymap->connection_->roundTrip())
    return std::unexpected("The Wayland compositor does not answer.");
  return keymap;
}

UsersKeymap::UsersKeymap(Executor& executor, std::unique_ptr<WaylandConnection> connection)
    : connection_(std::move(connection)),
      context_(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), &xkb_context_unref) {
  static constexpr wl_seat_listener listener{
      .capabilities =
          [](void* self, wl_seat* /*seat*/, std::uint32_t capabilities) {
            static_cast<UsersKeymap*>(self)->haveKeyboard((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0);
          },
      .name = [](void* /*self*/, wl_seat* /*seat*/, const char* /*name*/) {},
  };
  wl_seat_add_listener(connection_->seat(), &listener, this);
  watch_ = executor.watchReadable(connection_->descriptor(), [this] {
    // A connection that has ended stays readable for ever.
    if (!connection_->pump({})) watch_.reset();
  });
}

UsersKeymap::~UsersKeymap() = default;

void UsersKeymap::haveKeyboard(bool isThere) {
  if (isThere == static_cast<bool>(keyboard_)) return;
  keyboard_ = {isThere ? wl_seat_get_keyboard(connection_->seat()) : nullptr, &wl_keyboard_destroy};
  if (!isThere) return;
  using Keyboard = wl_keyboard*;
  static constexpr wl_keyboard_listener listener{
      .keymap =
          [](void* self, Keyboard /*keyboard*/, std::uint32_t format, std::int32_t file, std::uint32_t size) {
            const UniqueDescriptor owned(file);
            if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1) static_cast<UsersKeymap*>(self)->read(file, size);
          },
      .enter = [](void* /*self*/, Keyboard /*keyboard*/, std::uint32_t /*serial*/, wl_surface* /*surface*/,
                  wl_array* /*keys*/) {},
      .leave = [](void* /*self*/, Keyboard /*keyboard*/, std::uint32_t /*serial*/,
                  wl_surface* /*surface*/) {},
      .key = [](void* /*self*/, Keyboard /*keyboard*/, std::uint32_t /*serial*/, std::uint32_t /*time*/,
                std::uint32_t /*key*/, std::uint32_t /*state*/) {},
      .modifiers = [](void* /*self*/, Keyboard /*keyboard*/, std::uint32_t /*serial*/, std::uint32_t /*down*/,
                      std::uint32_t /*latched*/, std::uint32_t /*locked*/, std::uint32_t /*layout*/) {},
      .repeat_info = [](void* /*self*/, Keyboard /*keyboard*/, std::int32_t /*rate*/,
                        std::int32_t /*delay*/) {},
  };
  wl_keyboard_add_listener(keyboard_.get(), &listener, this);
}

void UsersKeymap::read(int file, std::uint32_t size) {
  void* text = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  if (text == MAP_FAILED) return;
  auto* keymap = xkb_keymap_new_from_buffer(context_.get(), static_cast<const char*>(text),
                                            size > 0 ? size - 1 : 0,  // the end of a string is sent, too
                                            XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS);
  ::munmap(text, size);
  if (keymap == nullptr) return;
  keymap_.reset(keymap);
  didChange_.emit();
}

xkb_keysym_t UsersKeymap::symbol(xkb_keycode_t key, xkb_layout_index_t layout) const {
  const xkb_keysym_t* symbols = nullptr;
  const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, layout, 0, &symbols);
  return count == 1 ? symbols[0] : XKB_KEY_NoSymbol;
}

std::optional<xkb_keysym_t> UsersKeymap::symbolOf(std::uint32_t key) const {
  if (!keymap_) return std::nullopt;
  constexpr std::uint32_t lastLatin = 0xFF;
  constexpr std::uint32_t firstFunction = 0xFD00;
  const auto code = key + xKeyCodeOffset;
  std::optional<xkb_keysym_t> first;
  for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(keymap_.get(), code);
       ++layout) {
    const auto found = symbol(code, layout);
    if (found == XKB_KEY_NoSymbol) continue;
    if (found <= lastLatin || (found >= firstFunction && found <= 0xFFFF)) return found;
    if (!first) first = found;
  }
  return first;
}

std::optional<std::uint32_t> UsersKeymap::keyFor(xkb_keysym_t wanted) const {
  if (!keymap_) return std::nullopt;
  std::optional<std::uint32_t> found;
  const auto last = xkb_keymap_max_keycode(keymap_.get());
  for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap_.get()); ++layout) {
    std::optional<std::uint32_t> here;
    for (auto code = xkb_keymap_min_keycode(keymap_.get()); code <= last && !here; ++code) {
      if (code >= xKeyCodeOffset && symbol(code, layout) == wanted) here = code - xKeyCodeOffset;
    }
    if (here && found && *here != *found) return std::nullopt;
    if (here) found = here;
  }
  return found;
}

std::optional<std::vector<std::uint32_t>> UsersKeymap::keysFor(PasteChord chord) const {
  std::vector<std::uint32_t> keys(keysOf(chord).begin(), keysOf(chord).end());
  if (keys.back() == KEY_V) {
    const auto key = keyFor(XKB_KEY_v);
    if (!key) return std::nullopt;
    keys.back() = *key;
  }
  return keys;
}

}  // namespace murmel
