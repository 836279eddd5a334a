#include "Audio/AudioFileReader.h"

#include "Foundation/UniqueDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <fmt/core.h>
#include <poll.h>
#include <sndfile.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace murmel {

namespace {

// What a header may say without being a mistake or worse.
constexpr int leastRate = 1'000;
constexpr int greatestRate = 768'000;
constexpr int mostChannels = 64;

std::string reasonOf(int error) {
  return std::generic_category().message(error);
}

std::string quotedForShell(const std::string& word) {
  std::string quoted = "'";
  for (const char character : word) quoted += character == '\'' ? "'\\''" : std::string(1, character);
  return quoted + "'";
}

/// Whether there is something to read, or the end; false when the wait was ended.
bool waitFor(int pipe, int stop) {
  std::array<pollfd, 2> waited{
      {{.fd = pipe, .events = POLLIN, .revents = 0}, {.fd = stop, .events = POLLIN, .revents = 0}}};
  while (::poll(waited.data(), waited.size(), -1) < 0) {
    if (errno != EINTR) return true;  // the read tells what is wrong
  }
  return waited[1].revents == 0;
}

/// What can be piped has to be read twice: it is held in memory, as no recording is ever written to a disk.
std::expected<UniqueDescriptor, std::string> held(int pipe, int stop) {
  UniqueDescriptor memory(::memfd_create("recording", MFD_CLOEXEC));
  if (!memory) return std::unexpected(reasonOf(errno));
  std::vector<char> chunk(std::size_t{1} << 16U);
  for (std::uint64_t total = 0;;) {
    if (!waitFor(pipe, stop)) return std::unexpected("interrupted");
    const auto count = ::read(pipe, chunk.data(), chunk.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count < 0) return std::unexpected(reasonOf(errno));
    if (count == 0) break;
    total += static_cast<std::uint64_t>(count);
    if (total > AudioFileReader::largestPipe)
      return std::unexpected("more than can be piped in; give the name of a file");
    for (ssize_t done = 0; done < count;) {
      const auto written = ::write(memory.get(), chunk.data() + done, static_cast<std::size_t>(count - done));
      if (written < 0) return std::unexpected(reasonOf(errno));
      done += written;
    }
  }
  if (::lseek(memory.get(), 0, SEEK_CUR) == 0) return std::unexpected("the file is empty");
  if (::lseek(memory.get(), 0, SEEK_SET) < 0) return std::unexpected(reasonOf(errno));
  return memory;
}

std::expected<UniqueDescriptor, std::string> opened(const std::filesystem::path& path, int stop) {
  const bool isInput = path == AudioFileReader::standardInput;
  // A named pipe that nobody writes to would hold the opening up.
  UniqueDescriptor file(isInput ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                : ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0) return std::unexpected(reasonOf(errno));
  if (S_ISDIR(status.st_mode)) return std::unexpected(reasonOf(EISDIR));
  if (isInput && ::isatty(file.get()) != 0)
    return std::unexpected("the standard input is a terminal; pipe a recording into it");
  if (!S_ISREG(status.st_mode)) return held(file.get(), stop);
  if (status.st_size == 0) return std::unexpected("the file is empty");
  return file;
}

}  // namespace

void AudioFileReader::Closer::operator()(sf_private_tag* file) const {
  ::sf_close(file);
}

std::expected<AudioFileReader, std::string> AudioFileReader::open(const std::filesystem::path& path,
                                                                  int stop) {
  AudioFileReader reader;
  reader.name_ = path.string();
  const auto problem = [&](const std::string& reason) {
    return std::unexpected(fmt::format("{}: {}", reader.name_, reason));
  };
  auto file = opened(path, stop);
  if (!file) return problem(file.error());
  SF_INFO info{};
  constexpr int closesDescriptor = SF_TRUE;  // also when it fails
  reader.file_.reset(::sf_open_fd(file->release(), SFM_READ, &info, closesDescriptor));
  if (!reader.file_ && ::sf_error(nullptr) == SF_ERR_UNRECOGNISED_FORMAT) {
    return problem("not a recording of a known format; what others can play is converted by: ffmpeg -i " +
                   quotedForShell(reader.name_) + " -ar 16000 -ac 1 recording.wav");
  }
  if (!reader.file_) return problem(::sf_strerror(nullptr));
  if (info.samplerate < leastRate || info.samplerate > greatestRate)
    return problem(fmt::format("{} samples a second cannot be meant", info.samplerate));
  if (info.channels < 1 || info.channels > mostChannels)
    return problem(fmt::format("{} channels cannot be meant", info.channels));
  reader.sampleRate_ = info.samplerate;
  reader.channelCount_ = static_cast<unsigned>(info.channels);
  reader.expectedFrames_ = static_cast<std::uint64_t>(std::max<sf_count_t>(info.frames, 0));
  return reader;
}

std::expected<std::size_t, std::string> AudioFileReader::read(std::span<float> output) {
  const auto frames = static_cast<sf_count_t>(output.size() / channelCount_);
  const auto count = ::sf_readf_float(file_.get(), output.data(), frames);
  if (count == 0 && ::sf_error(file_.get()) != SF_ERR_NO_ERROR)
    return std::unexpected(fmt::format("{}: {}", name_, ::sf_strerror(file_.get())));
  return static_cast<std::size_t>(std::max<sf_count_t>(count, 0));
}

void AudioFileReader::rewind() {
  ::sf_seek(file_.get(), 0, SEEK_SET);
}

}  // namespace murmel
