#include "MRMDownloadManifest/MRMModelDownloadPolicy.h"

#include <algorithm>

namespace murmel {

namespace {

// The platform's scale of transfer priorities.
constexpr double highPriority = 0.75;
constexpr double defaultPriority = 0.5;
constexpr double lowPriority = 0.25;

constexpr std::chrono::seconds longestDelay{30};

}  // namespace

std::chrono::seconds MRMModelDownloadPolicy::retryDelay(int n) {
  // From 2^5 on the limit holds; shifting further would overflow.
  const int exponent = std::clamp(n, 0, 5);
  return std::min(std::chrono::seconds(1 << exponent), longestDelay);
}

bool MRMModelDownloadPolicy::isRetryable(const MRMTransferError& error) {
  if (const auto found = error.userInfo.find(retryableHTTPResponseKey); found != error.userInfo.end()) {
    if (const auto* worthIt = std::get_if<bool>(&found->second); worthIt && *worthIt) return true;
  }
  if (error.domain != urlErrorDomain) return false;
  switch (error.code) {
    case urlErrorTimedOut:
    case urlErrorCannotFindHost:
    case urlErrorCannotConnectToHost:
    case urlErrorNetworkConnectionLost:
    case urlErrorDNSLookupFailed:
    case urlErrorNotConnectedToInternet:
    case urlErrorResourceUnavailable:
    case urlErrorBackgroundSessionWasDisconnected:
      return true;
    default:
      return false;
  }
}

MRMModelDownloadScheduling MRMModelDownloadPolicy::scheduling(MRMModelDownloadImportance importance,
                                                              bool requiredActive, bool runtimeActive) {
  if (importance == MRMModelDownloadImportance::required)
    return {.priority = highPriority, .suspended = false};
  return {.priority = requiredActive ? lowPriority : defaultPriority, .suspended = runtimeActive};
}

}  // namespace murmel
