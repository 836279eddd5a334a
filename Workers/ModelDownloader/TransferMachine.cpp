#include "Workers/ModelDownloader/TransferMachine.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include <fmt/core.h>

namespace murmel::downloader {

namespace {

constexpr int statusOK = 200;
constexpr int statusPartialContent = 206;
constexpr int statusRangeNotSatisfiable = 416;

bool isWorthRetrying(int status) {
  return status == 408 || status == 425 || status == 429 || status == 500 || status == 502 || status == 503 ||
         status == 504;
}

std::optional<std::int64_t> number(std::string_view text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 0) return std::nullopt;
  return value;
}

DownloadFailure integrityFailure(std::string reason, std::string message) {
  return {std::move(reason), std::move(message), {std::string(integrityErrorDomain), 0, {}}};
}

DownloadFailure wrongLength(std::int64_t expected, std::int64_t announced) {
  return integrityFailure(
      "wrong_length", fmt::format("The model host offers a file of another size ({} bytes instead of {}).",
                                  announced, expected));
}

MRMTransferError httpError(int status, bool worthRetrying) {
  return {std::string(httpErrorDomain),
          status,
          {{std::string(MRMModelDownloadPolicy::retryableHTTPResponseKey), worthRetrying}}};
}

DownloadFailure httpFailure(const MRMTransferError& error) {
  switch (error.code) {
    case 401:
    case 403:
      return {"forbidden", fmt::format("The model host refuses the file (HTTP {}).", error.code), error};
    case 404:
    case 410:
      return {"not_found", fmt::format("The model host does not have the file (HTTP {}).", error.code),
              error};
    case 429:
      return {"rate_limited", "The model host asks to slow down (HTTP 429). Try again later.", error};
    default:
      return {"server", fmt::format("The model host failed (HTTP {}). Try again later.", error.code), error};
  }
}

}  // namespace

std::optional<ContentRange> ContentRange::parse(std::string_view value) {
  constexpr std::string_view unit = "bytes ";
  if (!value.starts_with(unit)) return std::nullopt;
  value.remove_prefix(unit.size());
  const auto slash = value.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const auto range = value.substr(0, slash);
  const auto whole = value.substr(slash + 1);
  ContentRange result;
  if (whole != "*") {
    result.total = number(whole);
    if (!result.total) return std::nullopt;
  }
  if (range == "*") return result;
  const auto dash = range.find('-');
  if (dash == std::string_view::npos) return std::nullopt;
  result.first = number(range.substr(0, dash));
  const auto last = number(range.substr(dash + 1));
  if (!result.first || !last || *last < *result.first) return std::nullopt;
  return result;
}

DownloadFailure failureFor(const MRMTransferError& error) {
  if (error.domain == httpErrorDomain) return httpFailure(error);
  switch (error.code) {
    case urlErrorTimedOut:
      return {"timed_out", "The model host did not answer in time.", error};
    case urlErrorUnsupportedURL:
      return {"insecure", "The model host redirects to an address that is not encrypted.", error};
    case urlErrorServerCertificateUntrusted:
      return {"insecure", "The model host could not prove its identity.", error};
    case urlErrorCannotFindHost:
    case urlErrorDNSLookupFailed:
    case urlErrorNotConnectedToInternet:
      return {"offline", "The model host could not be found. Is this computer online?", error};
    case urlErrorCannotConnectToHost:
      return {"offline", "The model host could not be reached.", error};
    case urlErrorHTTPTooManyRedirects:
      return {"redirect_loop", "The model host sends from one address to the next without end.", error};
    default:
      return {"network", "The connection to the model host was lost.", error};
  }
}

TransferMachine::TransferMachine(std::optional<std::int64_t> byteCount, std::int64_t partialBytes,
                                 std::string entityTag, TransferLimits limits, std::int64_t largest)
    : byteCount_(byteCount),
      largest_(byteCount.value_or(largest)),
      total_(byteCount),
      received_(partialBytes),
      entityTag_(std::move(entityTag)),
      limits_(limits),
      resumedPartial_(partialBytes > 0) {}

std::variant<TransferMachine::Ask, TransferMachine::Verify> TransferMachine::begin(Instant now) {
  if (!started_) started_ = now;
  lastData_ = now;
  attemptBytes_ = 0;
  isComplete_ = false;
  retryAfter_.reset();
  refused_.reset();
  total_ = byteCount_;
  if (byteCount_ && received_ == *byteCount_) return Verify{};
  return Ask{received_, received_ > 0 ? entityTag_ : std::string()};
}

TransferMachine::HeadVerdict TransferMachine::head(const ResponseHead& head, Instant now) {
  lastData_ = now;
  if (head.status == statusOK) return acceptWhole(head);
  if (head.status == statusPartialContent) return acceptRange(head);
  return refuseStatus(head);
}

TransferMachine::HeadVerdict TransferMachine::acceptWhole(const ResponseHead& head) {
  if (head.contentLength && byteCount_ && *head.contentLength != *byteCount_)
    return refuse(wrongLength(*byteCount_, *head.contentLength));
  if (head.contentLength.value_or(0) > largest_) return refuse(wrongLength(largest_, *head.contentLength));
  if (!total_) total_ = head.contentLength;
  entityTag_ = head.entityTag;
  received_ = 0;
  resumedPartial_ = false;
  return HeadVerdict::restart;
}

TransferMachine::HeadVerdict TransferMachine::acceptRange(const ResponseHead& head) {
  const auto& range = head.contentRange;
  // Another part than was asked for: without ranges it may still go well.
  if (!range || range->first != received_)
    return refuse(httpFailure(httpError(head.status, /*worthRetrying=*/true)), /*discardsPartial=*/true);
  if (range->total && byteCount_ && *range->total != *byteCount_)
    return refuse(wrongLength(*byteCount_, *range->total));
  if (range->total.value_or(0) > largest_) return refuse(wrongLength(largest_, *range->total), true);
  if (!total_) total_ = range->total;
  resumedPartial_ = true;
  return HeadVerdict::append;
}

TransferMachine::HeadVerdict TransferMachine::refuseStatus(const ResponseHead& head) {
  if (head.status == statusRangeNotSatisfiable && received_ > 0) {
    if (head.contentRange && head.contentRange->total == received_) {
      // We have it all, and did not know how much that is.
      isComplete_ = true;
      return HeadVerdict::refuse;
    }
    return refuse(httpFailure(httpError(head.status, /*worthRetrying=*/true)), /*discardsPartial=*/true);
  }
  retryAfter_ = head.retryAfter;
  return refuse(httpFailure(httpError(head.status, isWorthRetrying(head.status))));
}

TransferMachine::HeadVerdict TransferMachine::refuse(DownloadFailure failure, bool discardsPartial) {
  refused_ = Fail{std::move(failure), discardsPartial};
  return HeadVerdict::refuse;
}

bool TransferMachine::data(std::size_t size, Instant now) {
  lastData_ = now;
  const auto more = static_cast<std::int64_t>(size);
  if (received_ + more > total_.value_or(largest_)) {
    refuse(integrityFailure("wrong_length", "The model host sent more than the file has."),
           /*discardsPartial=*/true);
    return false;
  }
  received_ += more;
  attemptBytes_ += more;
  return true;
}

TransferMachine::Next TransferMachine::end(const std::optional<MRMTransferError>& error, Instant now) {
  if (refused_) {
    auto refused = *std::exchange(refused_, std::nullopt);
    if (MRMModelDownloadPolicy::isRetryable(refused.failure.error))
      return afterError(refused.failure.error, refused.discardsPartial);
    if (refused.discardsPartial) forget();
    return refused;
  }
  if (isComplete_ || (total_ && received_ == *total_)) return Verify{};
  if (const auto late = overdue(now); late && durationToSeconds(now - *started_) >=
                                                  durationToSeconds(limits_.scaled(limits_.resourceTimeout)))
    return Fail{failureFor(*late), false};
  if (error) return afterError(*error, false);
  // A response without a length that ended well, or one that was shorter than it said.
  if (!total_ && received_ > 0) return Verify{};
  return afterError({std::string(urlErrorDomain), urlErrorNetworkConnectionLost, {}}, false);
}

TransferMachine::Next TransferMachine::digestDiffers() {
  const bool mayBeOurs = resumedPartial_;
  forget();
  auto failure = integrityFailure("wrong_content",
                                  "What the model host sent is not the approved file; it was thrown away.");
  if (!mayBeOurs) return Fail{std::move(failure), true};
  // The bytes from before may be to blame (a full disk, a power cut, another revision): once more, from
  // nothing.
  if (failures_ >= MRMModelDownloadPolicy::maximumAutomaticRetries) return Fail{std::move(failure), true};
  return Retry{limits_.scaled(MRMModelDownloadPolicy::retryDelay(failures_++)), true,
               std::move(failure.message)};
}

std::optional<MRMTransferError> TransferMachine::overdue(Instant now) const {
  const bool silent = now - lastData_ >= limits_.scaled(limits_.requestTimeout);
  const bool endless = started_ && now - *started_ >= limits_.scaled(limits_.resourceTimeout);
  if (!silent && !endless) return std::nullopt;
  return MRMTransferError{std::string(urlErrorDomain), urlErrorTimedOut, {}};
}

TransferMachine::Next TransferMachine::afterError(const MRMTransferError& error, bool discardsPartial) {
  if (discardsPartial) forget();
  if (!MRMModelDownloadPolicy::isRetryable(error)) return Fail{failureFor(error), discardsPartial};
  if (attemptBytes_ >= progressThatForgivesFailures) failures_ = 0;
  if (failures_ >= MRMModelDownloadPolicy::maximumAutomaticRetries)
    return Fail{failureFor(error), discardsPartial};
  auto delay = MRMModelDownloadPolicy::retryDelay(failures_++);
  if (retryAfter_) delay = std::max(delay, std::min(*retryAfter_, longestRetryAfter));
  return Retry{limits_.scaled(delay), discardsPartial, failureFor(error).message};
}

void TransferMachine::forget() {
  received_ = 0;
  entityTag_.clear();
  resumedPartial_ = false;
}

}  // namespace murmel::downloader
