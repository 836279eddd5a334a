#include "Shell/ClipboardHolder.h"

#include "Delivery/PrivateTranscript.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/WriteAll.h"
#include "Platform/Linux/X11/X11Pasteboards.h"
#include "Platform/Qt/QtExecutor.h"

#include <QCoreApplication>
#include <array>
#include <chrono>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace murmel {

namespace {

/// Words that nobody pasted in this time are not waited for.
constexpr Duration longestHold = std::chrono::hours(1);

std::string readAll(int descriptor) {
  std::string text;
  std::array<char, 4096> bytes{};
  for (ssize_t count = 0; (count = ::read(descriptor, bytes.data(), bytes.size())) > 0;)
    text.append(bytes.data(), static_cast<std::size_t>(count));
  wipe(std::span(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()));
  return text;
}

Task<void> put(ClipboardPasteboard& clipboard, SpokenText text, UniqueDescriptor answer) {
  auto replacing = clipboard.mrmReplace(privateTranscript(text, std::nullopt));
  const auto replaced = co_await replacing;
  if (!replaced) {
    writeAll(answer.get(), "The clipboard could not be taken.");
    QCoreApplication::exit(1);
  }
}

/// The life of the holder.
int holdUntilReplaced(Arguments arguments, UniqueDescriptor words, UniqueDescriptor answer) {
  ::setsid();
  const UniqueDescriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
  if (nothing) {
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nothing.get(), standard);
  }
  SpokenText text(readAll(words.get()));
  if (text.empty()) return 0;  // there was nothing to copy after all

  const QCoreApplication application(arguments.count, arguments.values);
  QtExecutor executor;
  const SystemClock clock;
  auto clipboards = X11Pasteboards::open(executor, clock);
  if (!clipboards) {
    writeAll(answer.get(), clipboards.error());
    return 1;
  }
  auto& clipboard = (*clipboards)->general();
  const auto replaced = clipboard.onForeignChange([](std::int64_t) { QCoreApplication::exit(0); });
  const auto late = executor.after(longestHold, [] { QCoreApplication::exit(0); });
  Scope scope;
  executor.post([&] { scope.start(put(clipboard, std::move(text), std::move(answer))); });
  return QCoreApplication::exec();
}

}  // namespace

ClipboardHolder::ClipboardHolder(Arguments arguments) {
  std::array<int, 2> words{-1, -1};
  std::array<int, 2> answer{-1, -1};
  if (::pipe2(words.data(), O_CLOEXEC) != 0 || ::pipe2(answer.data(), O_CLOEXEC) != 0) return;
  UniqueDescriptor wordsOut(words[0]);
  UniqueDescriptor answerIn(answer[1]);
  words_ = UniqueDescriptor(words[1]);
  answer_ = UniqueDescriptor(answer[0]);
  if (::fork() != 0) return;
  words_.reset();
  answer_.reset();
  std::_Exit(holdUntilReplaced(arguments, std::move(wordsOut), std::move(answerIn)));
}

std::expected<void, std::string> ClipboardHolder::hold(const SpokenText& text) {
  const bool isSent = words_ && writeAll(words_.get(), text.reveal());
  words_.reset();
  const auto complaint = readAll(answer_.get());
  if (isSent && complaint.empty()) return {};
  return std::unexpected(complaint.empty() ? "The text could not be put on the clipboard." : complaint);
}

}  // namespace murmel
