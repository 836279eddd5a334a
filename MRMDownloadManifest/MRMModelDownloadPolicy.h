#pragma once

#include "Foundation/RawValue.h"

#include <chrono>
#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace murmel {

/// Whether dictation waits for a download.
enum class MRMModelDownloadImportance { required, optional };

template <>
inline constexpr auto rawValueTable<MRMModelDownloadImportance> =
    std::to_array<RawValueRow<MRMModelDownloadImportance>>({
        {MRMModelDownloadImportance::required, "required"},
        {MRMModelDownloadImportance::optional, "optional"},
    });

/// How a transfer stands among the others.
struct MRMModelDownloadScheduling {
  /// Between 0 and 1.
  double priority = 0;
  bool suspended = false;

  friend bool operator==(const MRMModelDownloadScheduling&, const MRMModelDownloadScheduling&) = default;
};

/// Why a transfer failed: a number inside a domain, and what else is known.
struct MRMTransferError {
  std::string domain;
  int code = 0;
  std::map<std::string, std::variant<bool, std::int64_t, std::string>, std::less<>> userInfo;

  friend bool operator==(const MRMTransferError&, const MRMTransferError&) = default;
};

/// The domain of the errors of URL loading, with the numbers that are used here.
inline constexpr std::string_view urlErrorDomain = "NSURLErrorDomain";
enum URLErrorCode : int {
  urlErrorBackgroundSessionWasDisconnected = -997,
  urlErrorUnknown = -998,
  urlErrorCancelled = -999,
  urlErrorTimedOut = -1001,
  urlErrorUnsupportedURL = -1002,
  urlErrorCannotFindHost = -1003,
  urlErrorCannotConnectToHost = -1004,
  urlErrorNetworkConnectionLost = -1005,
  urlErrorDNSLookupFailed = -1006,
  urlErrorHTTPTooManyRedirects = -1007,
  urlErrorResourceUnavailable = -1008,
  urlErrorNotConnectedToInternet = -1009,
  urlErrorBadServerResponse = -1011,
  urlErrorServerCertificateUntrusted = -1202,
};

/// The rules that every download follows. Stateless.
struct MRMModelDownloadPolicy {
  /// Longest silence within one request.
  static constexpr std::chrono::seconds requestTimeout{600};
  /// Longest duration of a whole transfer.
  static constexpr std::chrono::seconds resourceTimeout{86400};
  static constexpr int maximumConnectionsPerHost = 6;
  static constexpr int maximumAutomaticRetries = 5;
  /// Key in `userInfo` under which true says that the HTTP status is worth another attempt.
  static constexpr std::string_view retryableHTTPResponseKey = "MRMDownloadRetryableHTTPResponse";

  /// The wait after the failure with number `n`, counted from 0: doubles from 1 s up to 30 s.
  static std::chrono::seconds retryDelay(int n);

  /// Whether the failure may pass by itself.
  static bool isRetryable(const MRMTransferError& error);

  /// `requiredActive`: a required download is under way. `runtimeActive`: somebody dictates.
  static MRMModelDownloadScheduling scheduling(MRMModelDownloadImportance importance, bool requiredActive,
                                               bool runtimeActive);
};

}  // namespace murmel
