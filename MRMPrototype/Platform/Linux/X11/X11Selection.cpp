#include "Platform/Linux/X11/X11Selection.h"

#include "Platform/Linux/Clipboard/ClipboardTypes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace murmel {

namespace {

/// The library keeps what it has sent until as much has been sent again: the words would stay there for
/// hours.
void forgetSent(X11Connection& connection, xcb_window_t own) {
  constexpr std::size_t head = 24;  // of the request; all of it fills the library's 16 KiB
  static constexpr std::array<char, std::size_t{16} * 1'024 - head> nothing{};
  const auto property = connection.atom("MURMEL_NOTHING");
  xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, own, property, XCB_ATOM_STRING, 8,
                      static_cast<std::uint32_t>(nothing.size()), nothing.data());
  xcb_delete_property(connection.get(), own, property);
  xcb_flush(connection.get());
}

/// Server time wraps every 49 days.
bool isEarlier(xcb_timestamp_t one, xcb_timestamp_t other) {
  return static_cast<std::int32_t>(one - other) < 0;
}

}  // namespace

std::optional<std::uint8_t> firstXFixesEvent(X11Connection& connection) {
  const auto* fixes = xcb_get_extension_data(connection.get(), &xcb_xfixes_id);
  if (fixes == nullptr || fixes->present == 0) return std::nullopt;
  const auto version = x11Reply(connection.get(), xcb_xfixes_query_version_reply,
                                xcb_xfixes_query_version(connection.get(), 5, 0));
  return version ? std::optional(fixes->first_event) : std::nullopt;
}

X11Selection::X11Selection(X11EventLoop& loop, X11IncrementalSender& sender, const Clock& clock,
                           std::string name, SelectionObserver observer, ClipboardKeeper* keeper)
    : loop_(loop),
      connection_(loop.connection()),
      sender_(sender),
      clock_(clock),
      name_(std::move(name)),
      observer_(std::move(observer)),
      keeper_(keeper),
      atom_(connection_.atom(name_)),
      window_(connection_.createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE)),
      time_(loop, window_) {
  xcb_xfixes_select_selection_input(connection_.get(), window_, atom_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

void X11Selection::propertyChanged(const xcb_property_notify_event_t& event) {
  time_.propertyChanged(event);
}

X11Selection::Standing X11Selection::standing() {
  const auto owner = ownerNow();
  time_.now();
  return {changeCount_, contents_, owner.value_or(XCB_NONE)};
}

std::optional<xcb_window_t> X11Selection::ownerNow() {
  const auto reply = x11Reply(connection_.get(), xcb_get_selection_owner_reply,
                              xcb_get_selection_owner(connection_.get(), atom_));
  return reply ? std::optional(reply->owner) : std::nullopt;
}

bool X11Selection::take(xcb_timestamp_t time, bool clearing) {
  const xcb_window_t owner = clearing ? static_cast<xcb_window_t>(XCB_NONE) : window_;
  if (clearing) clearedAt_ = time;
  xcb_set_selection_owner(connection_.get(), owner, atom_, time);
  return ownerNow() == owner;
}

std::optional<std::int64_t> X11Selection::replace(SharedSnapshot contents,
                                                  std::optional<std::int64_t> expected,
                                                  std::optional<DesktopClient> onlyReader) {
  // The time is taken before the count is looked at: the server refuses us when somebody becomes the owner
  // after it, so nothing that is written in between is overwritten.
  const auto time = time_.now();
  if (time == XCB_CURRENT_TIME) return std::nullopt;
  if (expected && *expected != changeCount_) return std::nullopt;
  const bool clearing = contents->isEmpty();
  if (!take(time, clearing)) return std::nullopt;

  onlyReader_ = onlyReader;
  if (clearing) {
    serveNothing();
  } else {
    serve(std::move(contents), time);
  }
  return ++changeCount_;
}

bool X11Selection::serveEverybody(std::int64_t changeCount) {
  const bool stands = contents_ && changeCount_ == changeCount;
  if (stands) onlyReader_.reset();
  return stands;
}

bool X11Selection::adopt(SharedSnapshot contents, xcb_timestamp_t ownedSince) {
  if (!take(ownedSince, /*clearing=*/false)) return false;
  serve(std::move(contents), ownedSince);
  ++changeCount_;
  return true;
}

void X11Selection::serve(SharedSnapshot contents, xcb_timestamp_t since) {
  ownedSince_ = since;
  values_.clear();
  contents_ = std::move(contents);
  for (const auto& item : contents_->items) {
    // The first value of a type wins where several items offer it: here is only one.
    for (const auto& value : item.values) values_.emplace(connection_.atom(value.type), &value);
  }
  if (keeper_ != nullptr) keeper_->keep(contents_, since);
}

void X11Selection::serveNothing() {
  values_.clear();
  if (std::exchange(contents_, nullptr) && keeper_ != nullptr) keeper_->forget();
}

void X11Selection::ownerChanged(const xcb_xfixes_selection_notify_event_t& event) {
  if (event.selection != atom_ || event.owner == window_) return;
  if (event.owner == XCB_NONE && clearedAt_ == event.selection_timestamp) {
    clearedAt_.reset();
    return;
  }
  if (contents_) {
    // Word of a change from before we became the owner comes late and takes nothing from us.
    if (ownerNow() == window_) return;
    serveNothing();
  }
  ++changeCount_;
  observer_.changedByAnother(changeCount_);
}

void X11Selection::requested(const xcb_selection_request_event_t& event) {
  if (event.owner != window_ || event.selection != atom_) return;
  // Clients from before 1989 leave the property out and expect the target's name.
  const auto property = event.property == XCB_NONE ? event.target : event.property;
  // Who asks for the time before we became the owner wants what stood here then: a slow reader of an earlier
  // paste gets nothing rather than the wrong thing.
  const bool isMeant = contents_ && (event.time == XCB_CURRENT_TIME || !isEarlier(event.time, ownedSince_));
  bool delivered = false;
  if (isMeant) {
    const Request request{event.requestor, connection_.clientOf(event.requestor)};
    if (event.target != connection_.atom("MULTIPLE")) {
      delivered = deliver(request, event.target, property);
    } else if (event.property != XCB_NONE) {
      delivered = deliverSeveral(request, property);
    }
  }

  xcb_selection_notify_event_t answer{};
  answer.response_type = XCB_SELECTION_NOTIFY;
  answer.time = event.time;
  answer.requestor = event.requestor;
  answer.selection = event.selection;
  answer.target = event.target;
  answer.property = delivered ? property : static_cast<xcb_atom_t>(XCB_NONE);
  // The protocol sends 32 bytes, which is what every event has.
  char wire[32] = {};
  static_assert(sizeof(answer) <= sizeof(wire));
  std::memcpy(wire, &answer, sizeof(answer));
  xcb_send_event(connection_.get(), 0, event.requestor, XCB_EVENT_MASK_NO_EVENT, wire);
  xcb_flush(connection_.get());
  if (delivered) forgetSent(connection_, window_);
}

std::vector<xcb_atom_t> X11Selection::offeredAtoms(bool withText) {
  std::vector<xcb_atom_t> atoms{connection_.atom("TIMESTAMP"), connection_.atom("TARGETS"),
                                connection_.atom("MULTIPLE")};
  for (const auto& item : contents_->items) {
    for (const auto& value : item.values) {
      const auto atom = connection_.atom(value.type);
      const bool isOffered = withText || !ClipboardTypes::isText(value.type);
      if (isOffered && std::ranges::find(atoms, atom) == atoms.end()) atoms.push_back(atom);
    }
  }
  return atoms;
}

bool X11Selection::mayHaveText(const DesktopClient& reader) const {
  return !onlyReader_ || isSameProgram(reader, *onlyReader_);
}

bool X11Selection::deliver(const Request& request, xcb_atom_t target, xcb_atom_t property) {
  auto* connection = connection_.get();
  if (target == connection_.atom("TARGETS")) {
    const auto atoms = offeredAtoms(mayHaveText(request.reader));
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(atoms.size()), atoms.data());
    report(request.reader, ClipboardRead::Kind::listOfForms, changeCount_);
    return true;
  }
  if (target == connection_.atom("TIMESTAMP")) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, property, XCB_ATOM_INTEGER, 32,
                        1, &ownedSince_);
    return true;
  }
  const auto found = values_.find(target);
  if (found == values_.end()) return false;
  if (ClipboardTypes::isText(found->second->type) && !mayHaveText(request.reader)) {
    report(request.reader, ClipboardRead::Kind::refused, changeCount_);
    return false;
  }
  return deliverValue(request, *found->second, property);
}

bool X11Selection::deliverValue(const Request& request, const ClipboardSnapshot::Value& value,
                                xcb_atom_t property) {
  const auto type = connection_.atom(value.encoding.empty() ? value.type : value.encoding);
  const auto kind =
      ClipboardTypes::isText(value.type) ? ClipboardRead::Kind::text : ClipboardRead::Kind::otherForm;
  if (value.data.size() > X11IncrementalSender::pieceSize) {
    sender_.begin(
        request.requestor, property, type, contents_, value, loop_.now(),
        [this, reader = request.reader, kind, count = changeCount_] { report(reader, kind, count); });
    return true;
  }
  const auto unit = static_cast<std::uint8_t>(value.unitBits);
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, request.requestor, property, type, unit,
                      static_cast<std::uint32_t>(value.data.size() / (unit / 8U)), value.data.data());
  report(request.reader, kind, changeCount_);
  return true;
}

bool X11Selection::deliverSeveral(const Request& request, xcb_atom_t property) {
  auto pairs = connection_.propertyWords(request.requestor, connection_.atomName(property));
  for (std::size_t index = 0; index + 1 < pairs.size(); index += 2) {
    const auto target = pairs[index];
    auto& answer = pairs[index + 1];
    const bool isNested = target == connection_.atom("MULTIPLE");
    if (answer == XCB_NONE || isNested || !deliver(request, target, answer)) answer = XCB_NONE;
  }
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, request.requestor, property,
                      connection_.atom("ATOM_PAIR"), 32, static_cast<std::uint32_t>(pairs.size()),
                      pairs.data());
  return true;
}

void X11Selection::report(const DesktopClient& reader, ClipboardRead::Kind kind, std::int64_t changeCount) {
  observer_.read({changeCount, kind, reader, clock_.now()});
}

ClipboardHandOver X11Selection::handOver(Duration limit) {
  if (!contents_ || ownerNow() != window_) return ClipboardHandOver::notOurs;
  const bool isKept = keeper_ != nullptr && keeper_->handOver(limit);
  return isKept ? ClipboardHandOver::arranged : ClipboardHandOver::failed;
}

}  // namespace murmel
