#include "Platform/Linux/Wayland/DataControlSelection.h"

#include "Platform/Linux/Clipboard/ClipboardTypes.h"
#include "Platform/Linux/Process/ProcessFacts.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace murmel {

namespace {

/// For everything together. Nobody waits for it: a dictation takes seconds, too.
constexpr Duration capturePatience = std::chrono::seconds(30);
/// For what an owner is about to deliver when somebody else takes the selection, and for a single form that
/// somebody waits for.
constexpr Duration formPatience = std::chrono::milliseconds(1'500);
/// What is kept in memory at most.
constexpr std::size_t mostBytes = std::size_t{512} * 1024 * 1024;
/// Whoever reads a text so soon after it was put there does so with everything that is copied: no paste was
/// sent by then.
constexpr Duration watchersHaste = std::chrono::milliseconds(25);

/// Our own contents come back as an offer like any other: by this form they are known again.
std::string markerOf(std::uint64_t number) {
  return "application/x-murmel-offer;number=" + std::to_string(::getpid()) + "." + std::to_string(number);
}

UniqueDescriptor ask(zwlr_data_control_offer_v1* offer, const std::string& type) {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  UniqueDescriptor source(ends[0]);
  const UniqueDescriptor target(ends[1]);
  zwlr_data_control_offer_v1_receive(offer, type.c_str(), target.get());
  return source;
}

/// One capture: forms in the order in which they are offered, as they come.
struct Collection {
  std::vector<ClipboardSnapshot::Value> values;
  std::vector<bool> came;
  std::size_t missing = 0;
  ClipboardCapture capture;
  std::move_only_function<void(ClipboardCapture)> done;

  void finish() {
    ClipboardSnapshot::Item item;
    for (std::size_t index = 0; index < values.size(); ++index) {
      if (came[index]) item.values.push_back(std::move(values[index]));
    }
    ClipboardSnapshot contents;
    if (!item.values.empty()) contents.items.push_back(std::move(item));
    capture.contents = shared(std::move(contents));
    done(std::move(capture));
  }
};

}  // namespace

/// Contents of ours, as the compositor knows them.
struct DataControlSelection::Source {
  Source(DataControlSelection& selection, SharedSnapshot served, std::optional<DesktopClient> reader)
      : owner(selection),
        contents(std::move(served)),
        onlyReader(reader),
        madeAt(selection.clock_.now()),
        object(zwlr_data_control_manager_v1_create_data_source(selection.manager_),
               &zwlr_data_control_source_v1_destroy) {
    static std::atomic<std::uint64_t> numbers = 0;
    marker = markerOf(++numbers);
    static constexpr zwlr_data_control_source_v1_listener listener{
        .send =
            [](void* self, zwlr_data_control_source_v1* /*source*/, const char* type, int descriptor) {
              auto& source = *static_cast<Source*>(self);
              source.owner.requested(source, type, UniqueDescriptor(descriptor));
            },
        // What stands there instead is told separately.
        .cancelled = [](void* /*self*/, zwlr_data_control_source_v1* /*source*/) {},
    };
    zwlr_data_control_source_v1_add_listener(object.get(), &listener, this);
    for (const auto& item : contents->items) {
      for (const auto& value : item.values)
        zwlr_data_control_source_v1_offer(object.get(), value.type.c_str());
    }
    zwlr_data_control_source_v1_offer(object.get(), marker.c_str());
  }

  DataControlSelection& owner;
  SharedSnapshot contents;
  std::optional<DesktopClient> onlyReader;  ///< of the text; nothing: everybody
  Instant madeAt;
  std::int64_t changeCount = 0;
  std::string marker;
  WaylandObject<zwlr_data_control_source_v1> object;
};

DataControlSelection::DataControlSelection(TransferLoop& loop, zwlr_data_control_manager_v1* manager,
                                           zwlr_data_control_device_v1* device, Kind kind, const Clock& clock,
                                           SelectionObserver observer, ClipboardKeeper* keeper)
    : loop_(loop),
      manager_(manager),
      device_(device),
      kind_(kind),
      clock_(clock),
      observer_(std::move(observer)),
      keeper_(keeper) {}

DataControlSelection::~DataControlSelection() = default;

void DataControlSelection::selected(std::unique_ptr<Offer> offer) {
  if (offer_) loop_.pipes().shorten(offer_.get(), clock_.now() + formPatience);
  if (!hasBegun_) {
    offer_ = std::move(offer);
    return;
  }
  const auto offers = [&](const std::shared_ptr<Source>& source) {
    return source && offer && std::ranges::find(offer->types, source->marker) != offer->types.end();
  };
  if (offers(source_)) return;  // told once more
  ++changeCount_;
  if (offers(awaited_)) {
    awaited_->changeCount = changeCount_;
    serve(std::exchange(awaited_, nullptr));
    return;
  }
  const bool isOurs = !offer && std::exchange(awaitsClearing_, false);
  offer_ = std::move(offer);
  if (std::exchange(source_, nullptr) && keeper_ != nullptr) keeper_->forget();
  if (!isOurs) observer_.changedByAnother(changeCount_);
}

void DataControlSelection::serve(std::shared_ptr<Source> source) {
  offer_.reset();
  source_ = std::move(source);
  if (keeper_ != nullptr) keeper_->keep(source_->contents, 0);
}

std::int64_t DataControlSelection::changeCount() {
  loop_.connection().roundTrip();
  return changeCount_;
}

void DataControlSelection::capture(std::move_only_function<void(ClipboardCapture)> done) {
  loop_.connection().roundTrip();
  ClipboardCapture capture;
  capture.changeCount = changeCount_;
  if (source_) capture.contents = source_->contents;
  if (source_ || !offer_) {
    done(std::move(capture));
    return;
  }
  auto collection = std::make_shared<Collection>();
  collection->capture = std::move(capture);
  collection->done = std::move(done);
  for (const auto& type : offer_->types) {
    const bool isKnown = std::ranges::find(collection->values, type, &ClipboardSnapshot::Value::type) !=
                         collection->values.end();
    if (ClipboardTypes::isKept(type) && !isKnown) collection->values.push_back({type, {}, {}, 8});
  }
  collection->missing = collection->values.size();
  collection->came.resize(collection->missing);
  if (collection->missing == 0) {
    collection->finish();
    return;
  }
  const auto deadline = clock_.now() + capturePatience;
  for (std::size_t index = 0; index < collection->values.size(); ++index) {
    auto source = ask(offer_->object.get(), collection->values[index].type);
    loop_.pipes().receive(std::move(source), mostBytes / collection->values.size(), deadline, offer_.get(),
                          [collection, index](std::optional<std::string> data) {
                            collection->came[index] = data.has_value();
                            if (data) {
                              collection->values[index].data = *std::move(data);
                            } else {
                              collection->capture.complete = false;
                            }
                            if (--collection->missing == 0) collection->finish();
                          });
  }
  wl_display_flush(loop_.connection().get());
}

void DataControlSelection::data(const std::string& type,
                                std::move_only_function<void(std::optional<std::string>)> done) {
  loop_.connection().roundTrip();
  if (source_) {
    const auto* value = source_->contents->find(type);
    done(value == nullptr ? std::nullopt : std::optional(value->data));
    return;
  }
  if (!offer_ || std::ranges::find(offer_->types, type) == offer_->types.end()) {
    done(std::nullopt);
    return;
  }
  loop_.pipes().receive(ask(offer_->object.get(), type), mostBytes, clock_.now() + formPatience, nullptr,
                        std::move(done));
  wl_display_flush(loop_.connection().get());
}

void DataControlSelection::put(zwlr_data_control_source_v1* source) {
  if (kind_ == Kind::clipboard) {
    zwlr_data_control_device_v1_set_selection(device_, source);
  } else {
    zwlr_data_control_device_v1_set_primary_selection(device_, source);
  }
}

bool DataControlSelection::set(const SharedSnapshot& contents, std::optional<DesktopClient> onlyReader) {
  auto source = std::make_shared<Source>(*this, contents, onlyReader);
  awaited_ = source;
  put(source->object.get());
  const bool answered = loop_.connection().roundTrip();
  // Where it has come, somebody may even have followed by now: its count says when it stood there.
  const bool came = awaited_ != source;
  if (!came) awaited_.reset();
  return answered && came;
}

bool DataControlSelection::clear() {
  if (!offer_ && !source_) {
    ++changeCount_;
    return true;
  }
  awaitsClearing_ = true;
  put(nullptr);
  const bool answered = loop_.connection().roundTrip();
  return !std::exchange(awaitsClearing_, false) && answered;
}

std::optional<std::int64_t> DataControlSelection::replace(SharedSnapshot contents,
                                                          std::optional<std::int64_t> expected,
                                                          std::optional<DesktopClient> onlyReader) {
  if (!loop_.connection().roundTrip()) return std::nullopt;
  if (expected && *expected != changeCount_) return std::nullopt;
  if (contents->isEmpty()) return clear() ? std::optional(changeCount_) : std::nullopt;
  const auto before = changeCount_;
  if (!set(contents, onlyReader)) return std::nullopt;
  return source_ ? source_->changeCount : before + 1;
}

bool DataControlSelection::serveEverybody(std::int64_t changeCount) {
  loop_.connection().roundTrip();
  if (!source_ || changeCount_ != changeCount) return false;
  source_->onlyReader.reset();
  return true;
}

ClipboardHandOver DataControlSelection::handOver(Duration limit) {
  loop_.connection().roundTrip();
  if (!source_) return ClipboardHandOver::notOurs;
  const bool isKept = keeper_ != nullptr && keeper_->handOver(limit);
  return isKept ? ClipboardHandOver::arranged : ClipboardHandOver::failed;
}

bool DataControlSelection::adopt(SharedSnapshot contents) {
  if (!loop_.connection().roundTrip()) return false;
  const bool isTheirs = offer_ && !std::ranges::any_of(offer_->types, [](const std::string& type) {
                          return type.starts_with("application/x-murmel-offer;");
                        });
  return !isTheirs && set(contents, std::nullopt);
}

DesktopClient DataControlSelection::readerOf(const Source& source, int pipe) {
  const auto wanted = source.onlyReader.value_or(DesktopClient{});
  const auto reader = readerOfPipe(pipe, wanted.processIdentifier);
  if (!source.onlyReader) return {reader, 0};
  // Some processes do not let anybody see what they read: whoever cannot be told then is taken for the
  // target.
  if (reader == 0 && !showsItsDescriptors(wanted.processIdentifier)) return wanted;
  if (wanted.processIdentifier != 0) return {reader, 0};
  // Which process the target is, is not known. It does not read before it is told to paste.
  if (clock_.now() - source.madeAt < watchersHaste) watchers_.insert(reader);
  return watchers_.contains(reader) ? DesktopClient{reader, 0} : wanted;
}

void DataControlSelection::requested(Source& source, const std::string& type, UniqueDescriptor target) {
  const auto* value = source.contents->find(type);
  if (value == nullptr) return;
  const bool isText = ClipboardTypes::isText(type);
  const auto reader = readerOf(source, target.get());
  const auto changeCount = source.changeCount;
  if (isText && source.onlyReader && !isSameProgram(reader, *source.onlyReader)) {
    report(reader, ClipboardRead::Kind::refused, changeCount);
    return;
  }
  const auto kind = isText ? ClipboardRead::Kind::text : ClipboardRead::Kind::otherForm;
  loop_.pipes().send(std::move(target), source.contents, *value, clock_.now(),
                     [this, reader, kind, changeCount](bool taken) {
                       if (taken) report(reader, kind, changeCount);
                     });
}

void DataControlSelection::report(const DesktopClient& reader, ClipboardRead::Kind kind,
                                  std::int64_t changeCount) {
  observer_.read({.changeCount = changeCount, .kind = kind, .reader = reader, .at = clock_.now()});
}

}  // namespace murmel
