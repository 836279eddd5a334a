#include "Platform/Linux/Accessibility/AccessibleFocusedField.h"

#include "Foundation/Async/Timers.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <deque>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace murmel {

namespace {

// Numbers of the AT-SPI protocol.
constexpr std::uint32_t rolePasswordText = 40;
constexpr int stateActive = 1;
constexpr int stateEditable = 7;
constexpr int stateFocused = 12;
constexpr int stateShowing = 25;
constexpr int stateManagesDescendants = 31;

/// Check box, icon, image, label, list item, menu, menu bar, menu item, page tab, push button, radio button,
/// radio menu item, scroll bar, slider, toggle button, link. What is not listed may well take text: cells,
/// canvases, documents, whatever a toolkit calls unknown.
constexpr std::array<std::uint32_t, 16> rolesWithoutText = {7,  26, 27, 29, 32, 33, 34, 35,
                                                            37, 43, 44, 45, 48, 51, 62, 88};

/// An interface of more parts than this is not searched to its end.
constexpr int mostParts = 3'000;

/// A program tells of its fields a while after its window is there, on a busy machine a second: one that has
/// just been started is asked again, in case it is a dialog for a password.
constexpr double youthSeconds = 20;
constexpr int looksAtTheYoung = 10;
constexpr auto untilNextLook = std::chrono::milliseconds(100);

/// What programs tell with; those of other toolkits never will.
constexpr std::array<std::string_view, 4> tellingLibraries = {"/libgtk-4.", "/libatk-bridge", "/libQt5Gui.",
                                                              "/libQt6Gui."};

/// A program whose libraries are not shown keeps secrets.
bool mayTell(pid_t process) {
  std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
  const std::string all{std::istreambuf_iterator(maps), {}};
  return all.empty() ||
         std::ranges::any_of(tellingLibraries, [&](auto library) { return all.contains(library); });
}

bool willTell(const RunningApplication& application) {
  timespec now{};
  if (application.startTime == 0 || ::clock_gettime(CLOCK_BOOTTIME, &now) != 0) return false;
  const auto started =
      static_cast<double>(application.startTime) / static_cast<double>(::sysconf(_SC_CLK_TCK));
  return static_cast<double>(now.tv_sec) < started + youthSeconds &&
         mayTell(application.client.processIdentifier);
}

bool has(std::uint64_t states, int state) {
  return (states >> state & 1) != 0;
}

}  // namespace

AccessibleFocusedField::AccessibleFocusedField(Executor& executor, Duration patience)
    : executor_(executor),
      patience_(patience),
      bus_(executor, patience / 5,
           [this](const AccessibleObject& object, bool isFocused) { focusChanged(object, isFocused); }) {}

AccessibleFocusedField::~AccessibleFocusedField() = default;

void AccessibleFocusedField::focusChanged(const AccessibleObject& object, bool isFocused) {
  forgetOldConnection();
  const auto known = focus_.find(object.application);
  if (isFocused) {
    focus_[object.application] = {object, std::nullopt};
  } else if (known != focus_.end() && known->second.object == object) {
    focus_.erase(known);
  }
}

void AccessibleFocusedField::forgetOldConnection() {
  if (std::exchange(knownConnection_, bus_.connectionNumber()) == bus_.connectionNumber()) return;
  focus_.clear();
  processes_.clear();
}

void AccessibleFocusedField::prepare(const RunningApplication& application) {
  if (bus_.connect()) scope_.start(look(application));
}

Task<void> AccessibleFocusedField::look(RunningApplication application) {
  // What was not found before may be there by now.
  std::erase_if(focus_, [](const auto& known) { return !known.second.object; });
  auto finding = find(application.client.processIdentifier, Purpose::preparation);
  co_await finding;
}

Task<std::vector<AccessibleObject>> AccessibleFocusedField::rootsOf(pid_t process) {
  std::vector<AccessibleObject> roots;
  auto listing = bus_.children(AccessibilityBus::desktop());
  const auto applications = co_await listing;
  if (!applications) co_return roots;
  for (const auto& application : *applications) {
    if (!processes_.contains(application.application)) {
      auto asking = bus_.processOf(application.application);
      const auto owner = co_await asking;
      if (owner) processes_[application.application] = *owner;
    }
    const auto known = processes_.find(application.application);
    if (known != processes_.end() && known->second == process) roots.push_back(application);
  }
  co_return roots;
}

Task<std::optional<AccessibleObject>> AccessibleFocusedField::searchIn(
    std::vector<AccessibleObject> windows) {
  std::deque<AccessibleObject> waiting(windows.begin(), windows.end());
  std::size_t windowsLeft = waiting.size();
  std::optional<AccessibleObject> focusedWindow;
  for (int part = 0; part < mostParts && !waiting.empty(); ++part) {
    const auto object = waiting.front();
    waiting.pop_front();
    const bool isWindow = windowsLeft > 0;
    if (isWindow) --windowsLeft;
    auto asking = bus_.states(object);
    const auto states = co_await asking;
    if (!states) continue;
    if (has(*states, stateFocused) && !isWindow) co_return object;
    if (has(*states, stateFocused)) focusedWindow = object;
    // What is not in the active window, or not to be seen, does not get the keys.
    if (!has(*states, isWindow ? stateActive : stateShowing)) continue;
    // A table of a million cells tells which of them has the focus; it is not asked for them all.
    if (has(*states, stateManagesDescendants)) continue;
    auto descending = bus_.children(object);
    const auto parts = co_await descending;
    if (parts) waiting.insert(isWindow ? waiting.end() : waiting.begin(), parts->begin(), parts->end());
  }
  co_return focusedWindow;
}

/// Whether the part, or the field whose inside it is, hides what is typed.
Task<bool> AccessibleFocusedField::hides(AccessibleObject object) {
  constexpr int levels = 3;
  for (int level = 0; level < levels; ++level) {
    auto asking = bus_.role(object);
    const auto role = co_await asking;
    if (role == rolePasswordText) co_return true;
    auto ascending = bus_.parent(object);
    const auto parent = co_await ascending;
    if (!role || !parent) break;
    object = *parent;
  }
  co_return false;
}

Task<FocusedFieldKind> AccessibleFocusedField::kindOf(AccessibleObject object) {
  auto asking = bus_.role(object);
  const auto role = co_await asking;
  if (!role) co_return FocusedFieldKind::unanswered;
  auto hiding = hides(object);
  const bool isHidden = co_await hiding;
  if (isHidden) co_return FocusedFieldKind::hidden;
  auto askingStates = bus_.states(object);
  const auto states = co_await askingStates;
  const bool isEditable = states && has(*states, stateEditable);
  const bool takesNoText = std::ranges::find(rolesWithoutText, *role) != rolesWithoutText.end();
  co_return takesNoText && !isEditable ? FocusedFieldKind::none : FocusedFieldKind::text;
}

Task<FocusedFieldKind> AccessibleFocusedField::findBelow(AccessibleObject root, Purpose purpose) {
  if (const auto known = focus_.find(root.application); known != focus_.end()) {
    const auto focus = known->second;
    if (!focus.object) co_return FocusedFieldKind::notTold;
    auto asking = bus_.states(*focus.object);
    const auto states = co_await asking;
    // An application that is busy has nothing else to say than before.
    if (!states) co_return focus.kind.value_or(FocusedFieldKind::unanswered);
    if (has(*states, stateFocused)) {
      auto classifying = kindOf(*focus.object);
      const auto kind = co_await classifying;
      focus_[root.application] = {focus.object, kind};
      co_return kind;
    }
  }
  auto listing = bus_.children(root);
  auto windows = co_await listing;
  if (!windows) co_return FocusedFieldKind::unanswered;
  auto searching = searchIn(*std::move(windows));
  const auto found = co_await searching;
  // Some tell of their windows only; they have nothing to say about fields.
  Focus focus{found, FocusedFieldKind::notTold};
  if (found) {
    auto classifying = kindOf(*found);
    focus.kind = co_await classifying;
  }
  // That nothing was found is remembered only from a search that had its time, for the paste that comes.
  if (found || purpose == Purpose::preparation) focus_[root.application] = focus;
  co_return *focus.kind;
}

Task<FocusedFieldKind> AccessibleFocusedField::find(pid_t process, Purpose purpose) {
  auto naming = rootsOf(process);
  const auto roots = co_await naming;
  auto kind = FocusedFieldKind::notTold;
  for (const auto& root : roots) {
    auto finding = findBelow(root, purpose);
    kind = co_await finding;
    if (kind != FocusedFieldKind::notTold) break;
  }
  co_return kind;
}

Task<void> AccessibleFocusedField::answer(RunningApplication application, int looks,
                                          std::shared_ptr<Question> question) {
  auto finding = find(application.client.processIdentifier, Purpose::answer);
  question->soFar = co_await finding;
  for (int look = 1; look < looks && question->soFar == FocusedFieldKind::notTold; ++look) {
    auto pause = sleepFor(executor_, untilNextLook);
    co_await pause;
    std::erase_if(focus_, [](const auto& known) { return !known.second.object; });
    auto again = find(application.client.processIdentifier, Purpose::answer);
    question->soFar = co_await again;
  }
  executor_.post([question] { question->sender.send(question->soFar); });
}

FieldTellers AccessibleFocusedField::tellers() {
  if (!bus_.connect()) return FieldTellers::nobody;
  return bus_.isForAll() ? FieldTellers::all : FieldTellers::some;
}

Task<FocusedFieldKind> AccessibleFocusedField::kind(RunningApplication application) {
  if (!bus_.connect()) co_return FocusedFieldKind::notTold;
  bus_.process();
  forgetOldConnection();
  auto [sender, receiver] = makeOneShot<FocusedFieldKind>();
  const auto question = std::make_shared<Question>(Question{std::move(sender)});
  const int looks = willTell(application) ? looksAtTheYoung : 1;
  scope_.start(answer(application, looks, question));
  const auto limit = executor_.after(patience_ + (looks - 1) * untilNextLook,
                                     [question] { question->sender.send(question->soFar); });
  const auto kind = co_await receiver;
  co_return kind.value_or(FocusedFieldKind::notTold);
}

}  // namespace murmel
