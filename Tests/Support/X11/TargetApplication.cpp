// An application to deliver text to: a window that takes the keyboard, tells on standard output what happens
// to it, and reads the clipboard when it is told to paste, as early or late as the test wants.
//
// usage: target-application CLASS [--read-after MILLISECONDS | --never]
//                           [--reads TIMES] [--die-on-chord] [--grab]
//
// Lines on standard output: "window ID", "focus", "press KEYCODE STATE", "release KEYCODE STATE", "pasted
// TEXT", "grabbed". Lines on standard input: "activate" brings the window to the front, "own TEXT" takes the
// clipboard, "grab" and "ungrab" the keyboard, "become TYPE" changes the type of its window, "quit" ends it.

#include "Support/X11/ClipboardPeer.h"
#include "Support/X11/XWindows.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <deque>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <poll.h>
#include <unistd.h>

using murmel::test::XObserver;

namespace {

using Clock = std::chrono::steady_clock;

struct Options {
  std::string windowClass;
  std::chrono::milliseconds readAfter;
  bool reads;
  int readTimes;
  bool diesOnChord, grabs;
};

Options parse(const std::vector<std::string>& arguments) {
  const auto at = [&](const char* name) { return std::ranges::find(arguments, name); };
  const auto has = [&](const char* name) { return at(name) != arguments.end(); };
  const auto number = [&](const char* name, int otherwise) {
    return has(name) ? std::stoi(*std::next(at(name))) : otherwise;
  };
  return {.windowClass = arguments.at(0),
          .readAfter = std::chrono::milliseconds(number("--read-after", 0)),
          .reads = !has("--never"),
          .readTimes = number("--reads", 1),
          .diesOnChord = has("--die-on-chord"),
          .grabs = has("--grab")};
}

void say(const std::string& line) {
  std::cout << line << std::endl;
}

class Target {
 public:
  explicit Target(Options options) : options_(std::move(options)) {
    window_ = xcb_generate_id(connection_);
    const std::uint32_t values[] = {x_.screen().white_pixel,
                                    XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                        XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, x_.screen().root, 0, 0, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    auto name = options_.windowClass;
    name += '\0';
    name += options_.windowClass;
    name += '\0';
    property("WM_CLASS", XCB_ATOM_STRING, name);
    property("WM_NAME", XCB_ATOM_STRING, options_.windowClass);
    const auto process = static_cast<std::uint32_t>(::getpid());
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, x_.atom("_NET_WM_PID"),
                        XCB_ATOM_CARDINAL, 32, 1, &process);
    // WM_HINTS with an input hint: window managers give the focus to windows that ask for it.
    const std::uint32_t hints[9] = {1, 1};
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32,
                        9, hints);
    xcb_map_window(connection_, window_);
  }

  int run() {
    while (true) {
      while (const auto event = XObserver::own(xcb_poll_for_event(connection_))) handle(*event);
      if (xcb_connection_has_error(connection_) != 0) return 4;
      xcb_flush(connection_);
      pollfd descriptors[2] = {{xcb_get_file_descriptor(connection_), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
      ::poll(descriptors, 2, millisecondsToNextRead());
      if (descriptors[1].revents != 0 && !obey()) return 0;
      while (!pending_.empty() && pending_.front() <= Clock::now()) {
        pending_.pop_front();
        paste();
      }
    }
  }

 private:
  int millisecondsToNextRead() const {
    if (pending_.empty()) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(pending_.front() - Clock::now());
    return left.count() < 0 ? 0 : static_cast<int>(left.count());
  }

  void property(const char* name, xcb_atom_t type, const std::string& value) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, x_.atom(name), type, 8,
                        static_cast<std::uint32_t>(value.size()), value.data());
  }

  void handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
      case XCB_MAP_NOTIFY:
        say("window " + std::to_string(window_));
        if (options_.grabs) grab();
        break;
      case XCB_FOCUS_IN: {
        const auto& focus = reinterpret_cast<const xcb_focus_in_event_t&>(event);
        if (focus.mode == XCB_NOTIFY_MODE_NORMAL || focus.mode == XCB_NOTIFY_MODE_WHILE_GRABBED) say("focus");
        break;
      }
      case XCB_KEY_PRESS:
      case XCB_KEY_RELEASE: {
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
        const bool isPress = (event.response_type & 0x7F) == XCB_KEY_PRESS;
        say((isPress ? "press " : "release ") + std::to_string(key.detail) + " " + std::to_string(key.state));
        if (isPress && isChord(key)) chord();
        break;
      }
      default:
        break;
    }
  }

  /// Ctrl+V, Ctrl+Shift+V or Shift+Insert and no other modifier, as a careful application compares them.
  bool isChord(const xcb_key_press_event_t& key) {
    constexpr std::uint16_t shift = 1;
    constexpr std::uint16_t control = 4;
    constexpr std::uint16_t others = 8 | 32 | 64 | 128;  // Alt, Super, AltGr; not the locks
    if ((key.state & others) != 0) return false;
    const auto mapping = XObserver::own(xcb_get_keyboard_mapping_reply(
        connection_, xcb_get_keyboard_mapping(connection_, key.detail, 1), nullptr));
    const auto* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const int count = xcb_get_keyboard_mapping_keysyms_length(mapping.get());
    bool isV = false;
    bool isInsert = false;
    for (int index = 0; index < count; ++index) {
      isV = isV || symbols[index] == 'v';
      isInsert = isInsert || symbols[index] == 0xFF63;
    }
    const auto held = key.state & (shift | control);
    return isV ? (held & control) != 0 : isInsert && held == shift;
  }

  void chord() {
    if (options_.diesOnChord) std::_Exit(0);
    if (!options_.reads) return;
    for (int time = 0; time < options_.readTimes; ++time)
      pending_.push_back(Clock::now() + options_.readAfter * (time + 1));
  }

  void paste() {
    murmel::test::ClipboardReader reader("CLIPBOARD");
    const auto value = reader.read("UTF8_STRING");
    say(value ? "pasted " + value->data : "pasted nothing");
  }

  void grab() {
    // The window must be on the screen, which the window manager decides.
    for (int attempt = 0; attempt < 200; ++attempt) {
      const auto asking = xcb_grab_keyboard(connection_, 0, window_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                            XCB_GRAB_MODE_ASYNC);
      const auto reply = XObserver::own(xcb_grab_keyboard_reply(connection_, asking, nullptr));
      if (reply && reply->status == XCB_GRAB_STATUS_SUCCESS) {
        say("grabbed");
        return;
      }
      ::usleep(5'000);
    }
  }

  bool obey() {
    std::string line;
    if (!std::getline(std::cin, line) || line == "quit") return false;
    if (line == "activate") x_.activate(window_);
    if (line == "grab") grab();
    if (line.starts_with("become ")) {
      const auto type = x_.atom("_NET_WM_WINDOW_TYPE_" + line.substr(7));
      xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, x_.atom("_NET_WM_WINDOW_TYPE"),
                          XCB_ATOM_ATOM, 32, 1, &type);
      say("became");
    }
    if (line == "ungrab") {
      xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
      x_.settle();
      say("ungrabbed");
    }
    if (line.starts_with("own ")) {
      murmel::ClipboardSnapshot contents{{{{{"UTF8_STRING", line.substr(4), "", 8}}}}};
      owner_ = std::make_unique<murmel::test::ClipboardOwner>("CLIPBOARD", std::move(contents));
      say("owned");
    }
    return true;
  }

  Options options_;
  XObserver x_;
  xcb_connection_t* connection_ = x_.connection();
  xcb_window_t window_ = 0;
  std::deque<Clock::time_point> pending_;
  std::unique_ptr<murmel::test::ClipboardOwner> owner_;
};

}  // namespace

int main(int count, char** arguments) {
  return Target(parse({arguments + 1, arguments + count})).run();
}
