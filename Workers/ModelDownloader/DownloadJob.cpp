#include "Workers/ModelDownloader/DownloadJob.h"

namespace murmel::downloader {

bool DownloadJob::onHead(const ResponseHead& head) {
  const bool knewTotal = machine->total().has_value();
  const auto verdict = machine->head(head, now);
  if (verdict == TransferMachine::HeadVerdict::refuse) return false;
  if (verdict == TransferMachine::HeadVerdict::restart) {
    if (auto emptied = partial->truncate(); !emptied) {
      diskFailure = std::move(emptied.error());
      return false;
    }
    partial->rememberEntityTag(machine->entityTag());
  }
  learntTotal = !knewTotal && machine->total();
  return true;
}

bool DownloadJob::onData(std::span<const std::uint8_t> bytes) {
  if (!machine->data(bytes.size(), now)) return false;
  if (auto kept = partial->append(bytes); !kept) {
    diskFailure = std::move(kept.error());
    return false;
  }
  return true;
}

void DownloadJob::onEnd(const std::optional<MRMTransferError>& error) {
  end = End{error};
}

std::vector<std::string> DownloadJob::places() const {
  std::vector<std::string> result;
  result.reserve(assets.size());
  for (const auto* asset : assets) result.push_back(asset->storePath());
  return result;
}

std::optional<std::int64_t> DownloadJob::total() const {
  return machine ? machine->total() : assets.front()->byteCount;
}

}  // namespace murmel::downloader
