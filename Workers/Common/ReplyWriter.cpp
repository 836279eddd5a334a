#include "Workers/Common/ReplyWriter.h"

#include "Foundation/Crypto/Wipe.h"
#include "Foundation/Json/Json.h"
#include "Foundation/WriteAll.h"

#include <string>

namespace murmel::worker {

namespace {

constexpr int protocolVersion = 1;

Json event(const char* name) {
  return {{"mrm_worker_protocol", protocolVersion}, {"event", name}};
}

std::string lineOf(const Json& object) {
  return jsonText(object) + '\n';
}

}  // namespace

bool ReplyWriter::ready() {
  return writeAll(descriptor_, lineOf(event("ready")));
}

bool ReplyWriter::result(std::int64_t id, std::string_view text) {
  auto object = event("result");
  object["id"] = id;
  object["text"] = text;
  const bool isHeard = writeAll(descriptor_, lineOf(object));
  wipeStack();
  wipeVectorRegisters();
  return isHeard;
}

bool ReplyWriter::error(std::optional<std::int64_t> id, std::string_view reason) {
  auto object = event("error");
  if (id) object["id"] = *id;
  object["error_type"] = reason;
  return writeAll(descriptor_, lineOf(object));
}

}  // namespace murmel::worker
