#include "Workers/Updater/UpdaterReport.h"

#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"
#include "Foundation/WriteAll.h"

namespace murmel::updater {

namespace {

bool write(int descriptor, const Json& object) {
  return writeAll(descriptor, jsonText(object, JsonCharacters::ascii) + '\n');
}

}  // namespace

bool UpdaterReport::feed(std::string_view bytes) {
  const std::span data(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return write(descriptor_, {{"event", "feed"}, {"feed", base64::encoded(data)}});
}

bool UpdaterReport::progress(std::string_view state, std::int64_t received, std::optional<std::int64_t> total,
                             const std::string& cause) {
  Json line{{"event", "progress"}, {"state", state}, {"received", received}};
  if (total) line["total"] = *total;
  if (!cause.empty()) line["message"] = cause;
  return write(descriptor_, line);
}

bool UpdaterReport::done() {
  return write(descriptor_, {{"event", "done"}});
}

bool UpdaterReport::failed(const std::string& message) {
  return write(descriptor_, {{"event", "failed"}, {"message", message}});
}

}  // namespace murmel::updater
