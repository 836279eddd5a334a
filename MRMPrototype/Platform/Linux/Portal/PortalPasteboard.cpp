#include "Platform/Linux/Portal/PortalPasteboard.h"

#include "Platform/Linux/Clipboard/ClipboardTypes.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace murmel {

namespace {

constexpr const char* clipboard = "Clipboard";
/// For everything together. Nobody waits for it: a dictation takes seconds, too.
constexpr Duration capturePatience = std::chrono::seconds(30);
/// For what an owner is about to deliver when somebody else takes its place, and for a single form that
/// somebody waits for.
constexpr Duration formPatience = std::chrono::milliseconds(1'500);
/// What is kept in memory at most.
constexpr std::size_t mostBytes = std::size_t{512} * 1024 * 1024;
/// Nobody offers more forms than this in earnest.
constexpr std::size_t mostForms = 100;
/// Whoever reads a text so soon after it was put there does so with everything that is copied: no paste was
/// sent by then.
constexpr Duration watchersHaste = std::chrono::milliseconds(25);

/// The descriptor in an answer, which belongs to the answer.
UniqueDescriptor descriptorIn(const BusMessage& answer) {
  int handle = -1;
  if (!answer || sd_bus_message_read(answer.get(), "h", &handle) < 0) return {};
  return UniqueDescriptor(::fcntl(handle, F_DUPFD_CLOEXEC, 0));
}

}  // namespace

/// One capture: forms in the order in which they are offered, as they come.
struct PortalPasteboard::Collection {
  std::vector<std::optional<ClipboardSnapshot::Value>> values;
  std::size_t missing = 1;  ///< and the word that all have been asked for
  ClipboardCapture capture;
  OneShotSender<ClipboardCapture> to;

  void came() {
    if (--missing > 0) return;
    ClipboardSnapshot::Item item;
    for (auto& value : values) {
      if (value) item.values.push_back(*std::move(value));
    }
    ClipboardSnapshot contents;
    if (!item.values.empty()) contents.items.push_back(std::move(item));
    capture.contents = shared(std::move(contents));
    to.send(std::move(capture));
  }
};

PortalPasteboard::PortalPasteboard(Executor& executor, const Clock& clock, RemoteDesktopSession& session)
    : executor_(executor),
      clock_(clock),
      session_(session),
      contents_(shared({})),
      starting_(session.willStart().subscribe([this] { follow(); })),
      standing_(session.didChange().subscribe([this] { sessionChanged(); })) {
  loop_.start();
}

PortalPasteboard::~PortalPasteboard() = default;

void PortalPasteboard::follow() {
  const auto mine = [this](sd_bus_message* signal) {
    const char* session = nullptr;
    return sd_bus_message_read(signal, "o", &session) >= 0 && session == session_.object();
  };
  auto& bus = session_.bus();
  owners_ = bus.onSignal(Portal::interface(clipboard), "SelectionOwnerChanged",
                         [this, mine](sd_bus_message* signal) {
                           if (mine(signal)) ownerChanged(signal);
                         });
  requests_ =
      bus.onSignal(Portal::interface(clipboard), "SelectionTransfer", [this, mine](sd_bus_message* signal) {
        const char* type = nullptr;
        std::uint32_t serial = 0;
        if (mine(signal) && sd_bus_message_read(signal, "su", &type, &serial) >= 0) requested(type, serial);
      });
}

void PortalPasteboard::sessionChanged() {
  if (session_.hasClipboard() || session_.standing() == RemoteDesktopSession::Standing::asking) return;
  // With the session its contents go.
  if (contents_->isEmpty() && offered_.empty()) return;
  contents_ = shared({});
  leaveOffer();
  changes_.emit(++changeCount_);
}

void PortalPasteboard::leaveOffer() {
  offered_.clear();
  if (const auto left = std::exchange(offer_, nullptr)) {
    loop_.enqueue([this, left] { loop_.pipes().shorten(left.get(), loop_.now() + formPatience); });
  }
}

void PortalPasteboard::ownerChanged(sd_bus_message* signal) {
  std::vector<std::string> types;
  int isOurs = 0;
  if (sd_bus_message_enter_container(signal, 'a', "{sv}") > 0) {
    while (sd_bus_message_enter_container(signal, 'e', "sv") > 0) {
      const char* key = nullptr;
      sd_bus_message_read(signal, "s", &key);
      const std::string_view name(key == nullptr ? "" : key);
      if (name == "session_is_owner") {
        sd_bus_message_read(signal, "v", "b", &isOurs);
      } else if (name == "mime_types" && sd_bus_message_enter_container(signal, 'v', "(as)") > 0) {
        sd_bus_message_enter_container(signal, 'r', "as");
        sd_bus_message_enter_container(signal, 'a', "s");
        const char* type = nullptr;
        while (sd_bus_message_read(signal, "s", &type) > 0) types.emplace_back(type);
        sd_bus_message_exit_container(signal);
        sd_bus_message_exit_container(signal);
        sd_bus_message_exit_container(signal);
      } else {
        sd_bus_message_skip(signal, "v");
      }
      sd_bus_message_exit_container(signal);
    }
  }
  if (isOurs != 0) {
    isAwaited_ = false;
    return;
  }
  // What of ours is on its way will stand above it.
  if (isAwaited_) return;
  contents_ = shared({});
  leaveOffer();
  offered_ = std::move(types);
  if (offered_.size() > mostForms) offered_.resize(mostForms);
  offer_ = std::make_shared<int>();
  changes_.emit(++changeCount_);
}

void PortalPasteboard::catchUp() {
  session_.bus().call({Portal::service, session_.object(), "org.freedesktop.DBus.Peer"}, "Ping");
  session_.bus().process();
}

std::optional<std::int64_t> PortalPasteboard::replace(const SharedSnapshot& contents,
                                                      std::optional<DesktopClient> onlyReader) {
  if (!session_.hasClipboard()) return std::nullopt;
  auto call = session_.newCall(clipboard, "SetSelection");
  if (!call) return std::nullopt;
  auto* message = call.get();
  sd_bus_message_open_container(message, 'a', "{sv}");
  if (!contents->isEmpty()) {
    sd_bus_message_open_container(message, 'e', "sv");
    sd_bus_message_append(message, "s", "mime_types");
    sd_bus_message_open_container(message, 'v', "as");
    sd_bus_message_open_container(message, 'a', "s");
    for (const auto& item : contents->items) {
      for (const auto& value : item.values) sd_bus_message_append(message, "s", value.type.c_str());
    }
    sd_bus_message_close_container(message);
    sd_bus_message_close_container(message);
    sd_bus_message_close_container(message);
  }
  sd_bus_message_close_container(message);
  isAwaited_ = !contents->isEmpty();
  if (!session_.bus().send(std::move(call), RemoteDesktopSession::patience)) {
    isAwaited_ = false;
    return std::nullopt;
  }
  leaveOffer();
  contents_ = contents;
  // A reader of whom nothing is known cannot be told from others.
  onlyReader_ = onlyReader == DesktopClient{} ? std::nullopt : onlyReader;
  madeAt_ = clock_.now();
  const auto count = ++changeCount_;
  // What somebody else writes from now on comes after its own word.
  session_.bus().waitUntil([this] { return !isAwaited_; }, RemoteDesktopSession::patience);
  isAwaited_ = false;
  return count;
}

void PortalPasteboard::requested(const std::string& type, std::uint32_t serial) {
  const auto* value = contents_->find(type);
  const bool isText = ClipboardTypes::isText(type);
  ClipboardRead read{.changeCount = changeCount_,
                     .kind = isText ? ClipboardRead::Kind::text : ClipboardRead::Kind::otherForm,
                     .reader = onlyReader_.value_or(DesktopClient{}),
                     .at = clock_.now()};
  const bool isRefused = isText && onlyReader_ && clock_.now() - madeAt_ < watchersHaste;
  UniqueDescriptor target;
  if (value != nullptr && !isRefused) {
    auto call = session_.newCall(clipboard, "SelectionWrite");
    if (call) sd_bus_message_append(call.get(), "u", serial);
    target = descriptorIn(session_.bus().send(std::move(call), RemoteDesktopSession::patience));
  }
  if (isRefused) {
    read.kind = ClipboardRead::Kind::refused;
    read.reader = {};
  }
  if (target.get() < 0) return finished(serial, false, read);
  loop_.enqueue([this, target = std::move(target), contents = contents_, value, read, serial,
                 alive = std::weak_ptr(alive_)]() mutable {
    loop_.pipes().send(std::move(target), std::move(contents), *value, loop_.now(),
                       [this, read, serial, alive](bool taken) {
                         executor_.post([this, read, serial, alive, taken] {
                           if (!alive.expired()) finished(serial, taken, read);
                         });
                       });
  });
}

void PortalPasteboard::finished(std::uint32_t serial, bool taken, const ClipboardRead& read) {
  auto call = session_.newCall(clipboard, "SelectionWriteDone");
  if (call) sd_bus_message_append(call.get(), "ub", serial, taken ? 1 : 0);
  session_.bus().tell(std::move(call));
  if (taken || read.kind == ClipboardRead::Kind::refused) reads_.emit(read);
}

UniqueDescriptor PortalPasteboard::ask(const std::string& type) {
  auto call = session_.newCall(clipboard, "SelectionRead");
  if (call) sd_bus_message_append(call.get(), "s", type.c_str());
  return descriptorIn(session_.bus().send(std::move(call), RemoteDesktopSession::patience));
}

Task<std::int64_t> PortalPasteboard::changeCount() {
  catchUp();
  co_return changeCount_;
}

Task<ClipboardCapture> PortalPasteboard::capture() {
  catchUp();
  ClipboardCapture capture;
  capture.changeCount = changeCount_;
  capture.contents = contents_;
  if (!contents_->isEmpty() || offered_.empty()) co_return capture;
  auto [sender, receiver] = makeOneShot<ClipboardCapture>();
  const auto collection =
      std::make_shared<Collection>(Collection{{}, 1, std::move(capture), std::move(sender)});
  collect(collection);
  collection->came();
  auto answer = awaitAnswer(std::move(receiver));
  co_return co_await answer;
}

void PortalPasteboard::collect(const std::shared_ptr<Collection>& collection) {
  const auto types = offered_;
  for (const auto& type : types) {
    if (!ClipboardTypes::isKept(type)) continue;
    const auto begun = clock_.now();
    auto source = ask(type);
    if (source.get() < 0) {
      collection->capture.complete = false;
      // A portal that hangs is not waited for a hundred times.
      if (clock_.now() - begun >= RemoteDesktopSession::patience) return;
      continue;
    }
    const auto index = collection->values.size();
    collection->values.emplace_back();
    ++collection->missing;
    auto received = [this, collection, index, type](std::optional<std::string> data) {
      executor_.post([collection, index, type, data = std::move(data)]() mutable {
        if (data) {
          collection->values[index] = {type, *std::move(data), "", 8};
        } else {
          collection->capture.complete = false;
        }
        collection->came();
      });
    };
    loop_.enqueue([this, source = std::move(source), offer = offer_, most = mostBytes / types.size(),
                   received = std::move(received)]() mutable {
      loop_.pipes().receive(std::move(source), most, loop_.now() + capturePatience, offer.get(),
                            std::move(received));
    });
  }
}

Task<std::optional<std::string>> PortalPasteboard::data(std::string type) {
  catchUp();
  if (const auto* value = contents_->find(type)) co_return value->data;
  if (std::ranges::find(offered_, type) == offered_.end()) co_return std::nullopt;
  auto source = ask(type);
  if (source.get() < 0) co_return std::nullopt;
  auto [sender, receiver] = makeOneShot<std::optional<std::string>>();
  loop_.enqueue([this, source = std::move(source),
                 to = std::make_shared<decltype(sender)>(std::move(sender))]() mutable {
    loop_.pipes().receive(std::move(source), mostBytes, loop_.now() + formPatience, nullptr,
                          [this, to = std::move(to)](std::optional<std::string> data) mutable {
                            executor_.post([to = std::move(to), data = std::move(data)]() mutable {
                              to->send(std::move(data));
                            });
                          });
  });
  auto answer = awaitAnswer(std::move(receiver));
  co_return co_await answer;
}

Task<std::optional<std::int64_t>> PortalPasteboard::mrmReplace(ClipboardSnapshot contents) {
  catchUp();
  co_return replace(shared(std::move(contents)), std::nullopt);
}

Task<std::optional<std::int64_t>> PortalPasteboard::mrmReplaceFor(DesktopClient onlyReader,
                                                                  ClipboardSnapshot contents) {
  catchUp();
  co_return replace(shared(std::move(contents)), onlyReader);
}

Task<std::optional<std::int64_t>> PortalPasteboard::mrmReplaceIfUnchanged(SharedSnapshot contents,
                                                                          std::int64_t expected) {
  catchUp();
  if (changeCount_ != expected) co_return std::nullopt;
  co_return replace(contents, std::nullopt);
}

Task<bool> PortalPasteboard::serveEverybody(std::int64_t changeCount) {
  catchUp();
  if (contents_->isEmpty() || changeCount_ != changeCount) co_return false;
  onlyReader_.reset();
  co_return true;
}

Task<ClipboardHandOver> PortalPasteboard::handOver() {
  catchUp();
  co_return contents_->isEmpty() ? ClipboardHandOver::notOurs : ClipboardHandOver::failed;
}

}  // namespace murmel
