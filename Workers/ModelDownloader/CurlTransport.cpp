#include "Workers/ModelDownloader/CurlTransport.h"

#include "Foundation/Text/Ascii.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <utility>
#include <vector>

#include <curl/curl.h>

namespace murmel::downloader {

namespace {

constexpr long mostRedirects = 5;
constexpr long connectTimeoutSeconds = 60;
constexpr long bufferSize = 256L * 1'024;
constexpr auto longestPoll = std::chrono::seconds(60);

/// A stream's share of an HTTP/2 connection, 1 to 256.
long weight(double priority) {
  return std::clamp(static_cast<long>(priority * 256), 1L, 256L);
}

int urlErrorFor(CURLcode code) {
  switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
      return urlErrorTimedOut;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return urlErrorCannotFindHost;
    case CURLE_COULDNT_CONNECT:
      return urlErrorCannotConnectToHost;
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_URL_MALFORMAT:
      return urlErrorUnsupportedURL;
    case CURLE_TOO_MANY_REDIRECTS:
      return urlErrorHTTPTooManyRedirects;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
      return urlErrorServerCertificateUntrusted;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
      return urlErrorBadServerResponse;
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
      return urlErrorNetworkConnectionLost;
    default:
      return urlErrorUnknown;
  }
}

template <class Number>
std::optional<Number> parsed(std::string_view text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 0) return std::nullopt;
  return value;
}

}  // namespace

struct CurlTransport::Multi {
  Multi() : handle(curl_multi_init()) {
    if (handle == nullptr) throw std::runtime_error("libcurl could not be started");
  }
  ~Multi() { curl_multi_cleanup(handle); }
  Multi(const Multi&) = delete;
  Multi& operator=(const Multi&) = delete;

  CURLM* handle;
};

/// One request and what its answer has said so far.
class CurlTransport::Transfer {
 public:
  Transfer(const TransferRequest& request, TransferObserver& observer,
           const std::filesystem::path& certificates)
      : observer_(observer), easy_(curl_easy_init()) {
    if (easy_ == nullptr) throw std::runtime_error("libcurl could not make a request");
    set(CURLOPT_URL, request.url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, mostRedirects);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    if (!certificates.empty()) set(CURLOPT_CAINFO, certificates.c_str());
    set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    set(CURLOPT_CONNECTTIMEOUT, connectTimeoutSeconds);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_TCP_KEEPALIVE, 1L);
    set(CURLOPT_BUFFERSIZE, bufferSize);
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
    set(CURLOPT_STREAM_WEIGHT, weight(request.priority));
    set(CURLOPT_USERAGENT, "Murmel");
    set(CURLOPT_HEADERFUNCTION, &Transfer::onHeaderLine);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Transfer::onBytes);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_PRIVATE, this);
    if (request.offset > 0) {
      // Not as "resume": libcurl would refuse a server that sends everything, which is good enough for us.
      set(CURLOPT_RANGE, (std::to_string(request.offset) + "-").c_str());
      if (!request.ifRange.empty()) {
        headers_ = curl_slist_append(nullptr, ("If-Range: " + request.ifRange).c_str());
        set(CURLOPT_HTTPHEADER, headers_);
      }
    }
  }
  ~Transfer() {
    curl_easy_cleanup(easy_);
    curl_slist_free_all(headers_);
  }
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  [[nodiscard]] CURL* handle() const { return easy_; }

  void end(CURLcode code) {
    // An answer without a body has not shown its head yet.
    if (code == CURLE_OK && !headShown_) code = showHead() ? CURLE_OK : CURLE_WRITE_ERROR;
    if (code == CURLE_OK || ended_) return observer_.onEnd(std::nullopt);
    observer_.onEnd(MRMTransferError{std::string(urlErrorDomain), urlErrorFor(code), {}});
  }

  template <class Value>
  void set(CURLoption option, Value value) {
    if (curl_easy_setopt(easy_, option, value) != CURLE_OK) {
      // An option that keeps the connection safe must never be lost silently.
      throw std::runtime_error("libcurl refuses option " + std::to_string(option));
    }
  }

 private:
  static std::size_t onHeaderLine(char* data, std::size_t, std::size_t size, void* self) {
    static_cast<Transfer*>(self)->takeHeaderLine({data, size});
    return size;
  }

  static std::size_t onBytes(char* data, std::size_t, std::size_t size, void* self) {
    auto& transfer = *static_cast<Transfer*>(self);
    if (!transfer.headShown_ && !transfer.showHead()) return 0;
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(data), size);
    if (!transfer.observer_.onData(bytes)) {
      transfer.ended_ = true;
      return 0;
    }
    return size;
  }

  void takeHeaderLine(std::string_view line) {
    if (line.starts_with("HTTP/")) {
      head_ = {};  // a redirect's, or that of an interim answer, is over
      return;
    }
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) return;
    const auto name = text::asciiLowercased(line.substr(0, colon));
    const auto value = text::asciiTrimmed(line.substr(colon + 1));
    if (name == "content-length") head_.contentLength = parsed<std::int64_t>(value);
    if (name == "content-range") head_.contentRange = ContentRange::parse(value);
    if (name == "etag" && value.starts_with('"')) head_.entityTag = value;
    if (name == "retry-after") {
      if (const auto seconds = parsed<std::int32_t>(value)) head_.retryAfter = std::chrono::seconds(*seconds);
    }
  }

  bool showHead() {
    headShown_ = true;
    long status = 0;
    curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
    head_.status = static_cast<int>(status);
    ended_ = !observer_.onHead(head_);
    return !ended_;
  }

  TransferObserver& observer_;
  CURL* easy_;
  curl_slist* headers_ = nullptr;
  ResponseHead head_;
  bool headShown_ = false;
  bool ended_ = false;  ///< by the observer
};

CurlTransport::CurlTransport(std::filesystem::path certificates) : certificates_(std::move(certificates)) {
  static const auto initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (initialised != CURLE_OK) throw std::runtime_error("libcurl could not be started");
  multi_ = std::make_unique<Multi>();
  curl_multi_setopt(multi_->handle, CURLMOPT_MAX_HOST_CONNECTIONS,
                    static_cast<long>(MRMModelDownloadPolicy::maximumConnectionsPerHost));
}

CurlTransport::~CurlTransport() {
  for (const auto& [identifier, transfer] : transfers_)
    curl_multi_remove_handle(multi_->handle, transfer->handle());
}

Transport::Identifier CurlTransport::start(const TransferRequest& request, TransferObserver& observer) {
  auto transfer = std::make_unique<Transfer>(request, observer, certificates_);
  curl_multi_add_handle(multi_->handle, transfer->handle());
  transfers_.emplace(next_, std::move(transfer));
  return next_++;
}

void CurlTransport::stop(Identifier transfer) {
  const auto found = transfers_.find(transfer);
  if (found == transfers_.end()) return;
  curl_multi_remove_handle(multi_->handle, found->second->handle());
  transfers_.erase(found);
}

void CurlTransport::pause(Identifier transfer, bool paused) {
  const auto found = transfers_.find(transfer);
  if (found != transfers_.end())
    curl_easy_pause(found->second->handle(), paused ? CURLPAUSE_RECV : CURLPAUSE_CONT);
}

void CurlTransport::prioritise(Identifier transfer, double priority) {
  const auto found = transfers_.find(transfer);
  if (found != transfers_.end()) found->second->set(CURLOPT_STREAM_WEIGHT, weight(priority));
}

void CurlTransport::run(Duration limit, int descriptor) {
  curl_waitfd extra{.fd = descriptor, .events = CURL_WAIT_POLLIN, .revents = 0};
  const auto milliseconds =
      std::chrono::ceil<std::chrono::milliseconds>(std::min<Duration>(limit, longestPoll));
  curl_multi_poll(multi_->handle, &extra, descriptor >= 0 ? 1 : 0,
                  static_cast<int>(std::max<std::int64_t>(milliseconds.count(), 0)), nullptr);
  int running = 0;
  curl_multi_perform(multi_->handle, &running);
  collectEnded();
}

void CurlTransport::collectEnded() {
  std::vector<std::pair<std::unique_ptr<Transfer>, CURLcode>> ended;
  int left = 0;
  while (const auto* message = curl_multi_info_read(multi_->handle, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const auto code = message->data.result;
    const auto found = std::ranges::find_if(
        transfers_, [&](const auto& entry) { return entry.second->handle() == message->easy_handle; });
    if (found == transfers_.end()) continue;
    curl_multi_remove_handle(multi_->handle, found->second->handle());
    ended.emplace_back(std::move(found->second), code);
    transfers_.erase(found);
  }
  for (const auto& [transfer, code] : ended) transfer->end(code);
}

}  // namespace murmel::downloader
