#pragma once

#include "Foundation/Async/Clock.h"
#include "MRMDownloadManifest/ApprovedModelDownload.h"
#include "MRMDownloadManifest/MRMModelDownloadPolicy.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace murmel::downloader {

/// "Content-Range: bytes first-last/total"; `first` is absent in the answer to a range that does not exist.
struct ContentRange {
  std::optional<std::int64_t> first;
  std::optional<std::int64_t> total;

  static std::optional<ContentRange> parse(std::string_view value);
};

/// What a server says before the bytes.
struct ResponseHead {
  int status = 0;
  std::optional<std::int64_t> contentLength{};
  std::optional<ContentRange> contentRange{};
  std::string entityTag{};  ///< strong ones only, else empty
  std::optional<std::chrono::seconds> retryAfter{};
};

/// How long a transfer may take. `scale` shortens every wait; 1 but in tests.
struct TransferLimits {
  Duration requestTimeout = MRMModelDownloadPolicy::requestTimeout;
  Duration resourceTimeout = MRMModelDownloadPolicy::resourceTimeout;
  double scale = 1;

  [[nodiscard]] Duration scaled(Duration duration) const {
    return secondsToDuration(durationToSeconds(duration) * scale);
  }
};

/// Why a file did not arrive.
struct DownloadFailure {
  std::string reason;   ///< stable word, as in the protocol
  std::string message;  ///< one sentence for the user
  MRMTransferError error;
};

/// The decisions of one file's transfer: what to ask for, what to make of the answer, when to try again and
/// when to give up. Values in, values out; whoever owns it moves the bytes.
///
/// The digest decides in the end. Everything before it only avoids fetching bytes in vain.
class TransferMachine {
 public:
  /// An attempt that brought this much was no failure of the network as a whole: the count starts anew.
  static constexpr std::int64_t progressThatForgivesFailures = 1 << 20;
  /// A server may ask for patience, within reason.
  static constexpr std::chrono::seconds longestRetryAfter{300};

  /// The bytes to ask for. `ifRange` is empty where no tag is known.
  struct Ask {
    std::int64_t offset = 0;
    std::string ifRange;
  };
  /// All bytes are there: look at the digest.
  struct Verify {};
  struct Retry {
    Duration delay{};
    bool discardsPartial = false;
    std::string cause;  ///< one sentence for the user
  };
  struct Fail {
    DownloadFailure failure;
    bool discardsPartial = false;
  };
  using Next = std::variant<Verify, Retry, Fail>;
  enum class HeadVerdict {
    append,   ///< the bytes continue what is there
    restart,  ///< the bytes are the whole file: what is there goes
    refuse,   ///< no bytes are wanted; `end` says what follows
  };

  /// `byteCount`: the file's exact size where it is known. `largest`: what it cannot be larger than.
  /// `partialBytes` and `entityTag`: what an earlier
  /// attempt left.
  TransferMachine(std::optional<std::int64_t> byteCount, std::int64_t partialBytes, std::string entityTag,
                  TransferLimits limits, std::int64_t largest = ApprovedModelDownload().largest);

  /// Starts an attempt.
  std::variant<Ask, Verify> begin(Instant now);
  HeadVerdict head(const ResponseHead& head, Instant now);
  /// Counts `size` bytes that follow. False when they are more than the file has; none of them is wanted
  /// then.
  bool data(std::size_t size, Instant now);
  /// The attempt is over; `error` is the transport's, if it has one.
  Next end(const std::optional<MRMTransferError>& error, Instant now);
  Next digestDiffers();
  /// A wait that is not the server's does not count as silence.
  void resumed(Instant now) { lastData_ = now; }
  /// The error of a transfer that has been silent or under way for too long.
  [[nodiscard]] std::optional<MRMTransferError> overdue(Instant now) const;

  [[nodiscard]] std::int64_t received() const { return received_; }
  [[nodiscard]] std::optional<std::int64_t> total() const { return total_; }
  /// The tag of the bytes that are there.
  [[nodiscard]] const std::string& entityTag() const { return entityTag_; }

 private:
  Next afterError(const MRMTransferError& error, bool discardsPartial);
  HeadVerdict refuse(DownloadFailure failure, bool discardsPartial = false);
  HeadVerdict acceptWhole(const ResponseHead& head);
  HeadVerdict acceptRange(const ResponseHead& head);
  HeadVerdict refuseStatus(const ResponseHead& head);
  void forget();

  std::optional<std::int64_t> byteCount_;
  std::int64_t largest_;
  std::optional<std::int64_t> total_;  ///< as the manifest or the server says
  std::int64_t received_;
  std::string entityTag_;
  TransferLimits limits_;
  int failures_ = 0;
  std::int64_t attemptBytes_ = 0;
  bool resumedPartial_;  ///< some of the bytes are from an earlier response
  bool isComplete_ = false;
  std::optional<Instant> started_;
  Instant lastData_;
  std::optional<std::chrono::seconds> retryAfter_;
  std::optional<Fail> refused_;  ///< decided by the head or by the bytes
};

/// The failure that stands for a transport's error.
DownloadFailure failureFor(const MRMTransferError& error);

/// Domain of errors that are a server's answer; the code is the HTTP status.
inline constexpr std::string_view httpErrorDomain = "MRMHTTPErrorDomain";
/// Domain of errors in what was received.
inline constexpr std::string_view integrityErrorDomain = "MRMIntegrityErrorDomain";

}  // namespace murmel::downloader
