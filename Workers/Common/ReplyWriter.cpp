#include "Workers/Common/ReplyWriter.h"

#include <cerrno>
#include <string>

#include <nlohmann/json.hpp>
#include <unistd.h>

namespace murmel::worker {

namespace {

using Json = nlohmann::json;

constexpr int protocolVersion = 1;

Json event(const char* name) {
  return {{"mrm_worker_protocol", protocolVersion}, {"event", name}};
}

std::string lineOf(const Json& object) {
  constexpr int noIndentation = -1;
  return object.dump(noIndentation, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace) + '\n';
}

}  // namespace

bool ReplyWriter::ready() {
  return write(lineOf(event("ready")));
}

bool ReplyWriter::result(std::int64_t id, std::string_view text) {
  auto object = event("result");
  object["id"] = id;
  object["text"] = text;
  return write(lineOf(object));
}

bool ReplyWriter::error(std::optional<std::int64_t> id, std::string_view reason) {
  auto object = event("error");
  if (id) object["id"] = *id;
  object["error_type"] = reason;
  return write(lineOf(object));
}

bool ReplyWriter::write(std::string_view line) {
  while (!line.empty()) {
    const auto count = ::write(descriptor_, line.data(), line.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    line.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace murmel::worker
