#include "Platform/Linux/Sway/SwayWorkspace.h"

#include "Foundation/Json/Json.h"
#include "Platform/Linux/Process/ProcessFacts.h"

#include <utility>

namespace murmel {

namespace {

/// Null for what is no JSON.
Json parsed(const std::optional<std::string>& text) {
  return parsedJson(text.value_or(std::string()));
}

/// The window below `node` for which `isWanted` holds; null when there is none. Windows are the nodes with a
/// process.
template <class Predicate>
const Json* findWindow(const Json& node, const Predicate& isWanted) {
  if (node.contains("pid") && isWanted(node)) return &node;
  for (const char* kind : {"nodes", "floating_nodes"}) {
    for (const auto& child : node[kind].elements()) {
      if (const auto* found = findWindow(child, isWanted)) return found;
    }
  }
  return nullptr;
}

template <class Number>
Number number(const Json& value) {
  return static_cast<Number>(value.integer().value_or(0));
}

RunningApplication described(const Json& window, pid_t server) {
  RunningApplication application;
  application.window = number<std::uint32_t>(window["id"]);
  application.client.processIdentifier = number<pid_t>(window["pid"]);
  application.bundleIdentifier = window["app_id"].textOrEmpty();
  if (window.contains("window_properties")) {
    const auto& properties = window["window_properties"];
    // A program of the X server, for which the compositor reads the clipboard.
    application.bundleIdentifier = properties["class"].textOrEmpty();
    application.instanceName = properties["instance"].textOrEmpty();
    application.clipboardProxy = server;
  }
  if (const auto facts = factsOf(application.client.processIdentifier))
    application.startTime = facts->startTime;
  return application;
}

bool isFocused(const Json& window) {
  return window["focused"].boolean().value_or(false);
}

}  // namespace

std::unique_ptr<SwayWorkspace> SwayWorkspace::open(Executor& executor, const std::string& path) {
  auto questions = SwaySocket::open(path);
  auto events = SwaySocket::open(path);
  if (!questions || !events) return nullptr;
  if (!events->ask(SwaySocket::Request::subscribe, R"(["window","workspace"])")) return nullptr;
  return std::unique_ptr<SwayWorkspace>(
      new SwayWorkspace(executor, path, std::move(questions), std::move(events)));
}

SwayWorkspace::SwayWorkspace(Executor& executor, std::string path, std::unique_ptr<SwaySocket> questions,
                             std::unique_ptr<SwaySocket> events)
    : path_(std::move(path)),
      questions_(std::move(questions)),
      events_(std::move(events)),
      activations_(executor, [this] { return frontmostApplication(); }),
      watch_(executor.watchReadable(events_->descriptor(), [this] { handleEvents(); })) {
  activations_.begin();
}

std::optional<std::string> SwayWorkspace::ask(SwaySocket::Request request, const std::string& payload) {
  // One that was given up because an answer came late is no use any more.
  if (!questions_ || questions_->hasFailed()) questions_ = SwaySocket::open(path_);
  return questions_ ? questions_->ask(request, payload) : std::nullopt;
}

void SwayWorkspace::handleEvents() {
  bool isNews = false;
  while (events_->next()) isNews = true;
  if (isNews) activations_.changed();
  // A connection that has ended stays readable for ever.
  if (events_->hasFailed()) watch_.reset();
}

std::optional<RunningApplication> SwayWorkspace::frontmostApplication() {
  const auto tree = parsed(ask(SwaySocket::Request::tree));
  const auto* window = findWindow(tree, &isFocused);
  if (window == nullptr) return std::nullopt;
  return described(*window, questions_->server());
}

bool SwayWorkspace::isTerminated(const RunningApplication& application) {
  if (hasEnded(application.client.processIdentifier, application.startTime)) return true;
  const auto tree = parsed(ask(SwaySocket::Request::tree));
  return findWindow(tree, [&](const Json& window) {
           return number<std::uint32_t>(window["id"]) == application.window;
         }) == nullptr;
}

void SwayWorkspace::activate(const RunningApplication& application) {
  ask(SwaySocket::Request::command, "[con_id=" + std::to_string(application.window) + "] focus");
}

}  // namespace murmel
