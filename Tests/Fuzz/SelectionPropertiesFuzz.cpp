// An owner of the clipboard that answers with any property: lists of targets, pieces (INCR), types and
// formats that do not fit. Run in a private session with an X server.

#include "Platform/Linux/X11/X11SelectionReader.h"
#include "Require.h"

#include <atomic>
#include <future>
#include <mutex>

using namespace murmel;

namespace {

/// Answers each request with the next bytes of the input.
class Owner {
 public:
  Owner() : loop_(*X11Connection::open()), connection_(loop_.connection()) {
    window_ = connection_.createHiddenWindow(XCB_EVENT_MASK_NO_EVENT);
    xcb_set_selection_owner(connection_.get(), window_, connection_.atom("CLIPBOARD"), XCB_CURRENT_TIME);
    for (const char* name :
         {"TARGETS", "INCR", "UTF8_STRING", "STRING", "ATOM", "text/html", "image/png", "INTEGER"})
      types_.push_back(connection_.atom(name));
    xcb_flush(connection_.get());
    loop_.start([this](const xcb_generic_event_t& event) { handle(event); }, [] {});
  }
  ~Owner() { loop_.stop(); }

  [[nodiscard]] xcb_window_t window() const { return window_; }
  void answerWith(std::string_view bytes) {
    const std::lock_guard lock(mutex_);
    bytes_ = bytes;
  }

 private:
  std::uint8_t next() {
    const std::lock_guard lock(mutex_);
    if (bytes_.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte;
  }
  xcb_atom_t type() {
    const auto choice = next();
    // Atoms, and numbers that are none.
    return choice < 240 ? types_[choice % types_.size()] : 1'000U * choice;
  }

  void put(xcb_window_t window, xcb_atom_t property) {
    const std::uint8_t format = std::uint8_t{8} << (next() % 3);
    const auto kind = type();
    const std::size_t count = next() % 16;
    std::string value;
    if (format == 32 && next() % 2 == 0) {
      for (std::size_t unit = 0; unit < count; ++unit) {
        const auto atom = type();
        value.append(reinterpret_cast<const char*>(&atom), sizeof atom);
      }
    } else {
      while (value.size() < count * format / 8) value += static_cast<char>(next());
    }
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, kind, format,
                        static_cast<std::uint32_t>(count), value.data());
  }

  void handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_SELECTION_REQUEST) return;
    const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    if (next() % 8 != 0) {
      answer.property = request.property;
      put(request.requestor, request.property);
    }
    xcb_send_event(connection_.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&answer));
    // Pieces, should it have been told that there are some, and their end: nobody is to wait for long.
    for (int left = next() % 4; left > 0; --left) put(request.requestor, request.property);
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        types_[2], 8, 0, nullptr);
    xcb_flush(connection_.get());
  }

  std::mutex mutex_;
  std::string_view bytes_;
  X11EventLoop loop_;
  X11Connection& connection_;
  xcb_window_t window_ = XCB_NONE;
  std::vector<xcb_atom_t> types_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Owner owner;
  static X11SelectionReader reader(*X11Connection::open(), "CLIPBOARD");
  owner.answerWith({reinterpret_cast<const char*>(data), size});
  std::promise<ClipboardCapture> captured;
  reader.loop().enqueue([&] { captured.set_value(reader.capture(owner.window())); });
  auto future = captured.get_future();
  require(future.wait_for(X11SelectionReader::patience * 2) == std::future_status::ready, "a read ends");
  const auto contents = future.get().contents;
  if (!contents) return 0;
  for (const auto& item : contents->items) {
    for (const auto& value : item.values) {
      require(!value.type.empty(), "what is kept has a name");
      require(value.unitBits == 8 || value.unitBits == 16 || value.unitBits == 32, "and units");
      require(value.data.size() % (value.unitBits / 8) == 0, "of which there are whole ones");
    }
  }
  return 0;
}
