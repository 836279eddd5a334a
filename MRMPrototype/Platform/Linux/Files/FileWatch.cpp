#include "Platform/Linux/Files/FileWatch.h"

#include <array>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace murmel {

FileWatch::FileWatch(Executor& executor, const std::vector<std::filesystem::path>& files,
                     std::function<void()> changed)
    : executor_(executor), changed_(std::move(changed)), inotify_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
  // Without inotify nothing is told: what is read at the next start is still right.
  if (!inotify_) return;
  for (const auto& file : files) {
    const int watch = ::inotify_add_watch(inotify_.get(), file.parent_path().c_str(),
                                          IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE);
    if (watch >= 0) names_[watch].insert(file.filename().string());
  }
  readable_ = executor_.watchReadable(inotify_.get(), [this] { read(); });
}

void FileWatch::read() {
  constexpr std::size_t space = 16 * 1024;
  alignas(inotify_event) std::array<char, space> buffer{};
  bool isOurs = false;
  for (;;) {
    const auto size = ::read(inotify_.get(), buffer.data(), buffer.size());
    if (size <= 0) break;
    for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
      const auto* const event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
      at += sizeof(inotify_event) + event->len;
      const auto names = names_.find(event->wd);
      const bool isLost = (event->mask & IN_Q_OVERFLOW) != 0;
      isOurs = isOurs || isLost ||
               (event->len > 0 && names != names_.end() && names->second.contains(event->name));
    }
  }
  if (isOurs) telling_ = executor_.after(quiet, [this] { changed_(); });
}

}  // namespace murmel
