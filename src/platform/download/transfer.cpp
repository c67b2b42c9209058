#include "platform/download/transfer.h"

#include <curl/curl.h>

#include <mutex>

namespace platform {
namespace {

using Ticks = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kTurn{50};

struct Body {
  std::string bytes;
  std::size_t limit = 0;
  bool too_large = false;
};

/// Called from within the web client: no exception may leave it.
std::size_t TakeBytes(char* data, std::size_t size, std::size_t count, void* target) noexcept {
  Body& body = *static_cast<Body*>(target);
  const std::size_t length = size * count;
  if (length > body.limit - body.bytes.size()) {
    body.too_large = true;
    return 0;
  }
  try {
    body.bytes.append(data, length);
  } catch (const std::bad_alloc&) {
    body.too_large = true;
    return 0;
  }
  return length;
}

void StartClientOnce() {
  static std::once_flag started;
  std::call_once(started, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

}  // namespace

struct Transfer::Handles {
  CURL* easy = nullptr;
  CURLM* multi = nullptr;
  curl_slist* headers = nullptr;
  Body body;
  Ticks::time_point began = Ticks::now(), moved = began;
  std::size_t size_then = 0;

  Handles() {
    StartClientOnce();
    easy = curl_easy_init();
    multi = curl_multi_init();
    if (easy == nullptr || multi == nullptr) throw std::bad_alloc();
  }
  ~Handles() {
    curl_multi_remove_handle(multi, easy);
    curl_easy_cleanup(easy);
    curl_multi_cleanup(multi);
    curl_slist_free_all(headers);
  }
  Handles(const Handles&) = delete;
  Handles& operator=(const Handles&) = delete;

  template <typename T>
  T Info(CURLINFO what) const {
    T value{};
    curl_easy_getinfo(easy, what, &value);
    return value;
  }
};

Transfer::Transfer(const std::string& address, const DownloadOptions& options)
    : handles_(std::make_unique<Handles>()), options_(options) {
  CURL* easy = handles_->easy;
  handles_->body.limit = options.size_limit;
  const bool secure = address.size() > 8 && curl_strnequal(address.c_str(), "https://", 8) != 0;
  curl_easy_setopt(easy, CURLOPT_URL, address.c_str());
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https,file");
  // A server may not send us to a local file, nor from a secured address to an open one.
  curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, secure ? "https" : "http,https");
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy, CURLOPT_MAXREDIRS, static_cast<long>(options.redirects));
  curl_easy_setopt(easy, CURLOPT_FAILONERROR, 1L);
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(options.connect_timeout.count()));
  curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(options.size_limit));
  curl_easy_setopt(easy, CURLOPT_USERAGENT, "Declarix");
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &TakeBytes);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, &handles_->body);
  // The rates of the day and the newest version are asked for: an office proxy's copy would be yesterday's.
  handles_->headers = curl_slist_append(nullptr, "Cache-Control: no-cache");
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, handles_->headers);
  curl_multi_add_handle(handles_->multi, easy);
}

Transfer::~Transfer() = default;

bool Transfer::Turn() {
  if (done_) return false;
  int running = 0;
  const CURLMcode failed = curl_multi_perform(handles_->multi, &running);
  if (failed != CURLM_OK) {
    Finish(CURLE_FAILED_INIT);
    return false;
  }
  if (running == 0) {
    int left = 0;
    const CURLMsg* message = curl_multi_info_read(handles_->multi, &left);
    Finish(message != nullptr && message->msg == CURLMSG_DONE ? message->data.result : CURLE_FAILED_INIT);
    return false;
  }
  if (TimedOut()) {
    Finish(CURLE_OPERATION_TIMEDOUT);
    return false;
  }
  curl_multi_poll(handles_->multi, nullptr, 0, static_cast<int>(kTurn.count()), nullptr);
  return true;
}

bool Transfer::TimedOut() {
  const Ticks::time_point now = Ticks::now();
  if (handles_->body.bytes.size() != handles_->size_then) {
    handles_->size_then = handles_->body.bytes.size();
    handles_->moved = now;
  }
  return now - handles_->moved > options_.stall_timeout || now - handles_->began > options_.total_timeout;
}

void Transfer::Finish(int result) {
  done_ = true;
  if (handles_->body.too_large) result = CURLE_FILESIZE_EXCEEDED;
  if (result == CURLE_OK && !IsFramed() && !handles_->body.bytes.ends_with('\n')) result = CURLE_PARTIAL_FILE;
  result_ = result;
  error_ = result;
  if (result == CURLE_HTTP_RETURNED_ERROR) {
    error_ = static_cast<int>(handles_->Info<long>(CURLINFO_RESPONSE_CODE));
  }
}

/// A body whose length the server told in some way, which the client has checked. One that just ends with the
/// connection may have been cut anywhere: what is fetched here are texts, so its last line must be whole.
bool Transfer::IsFramed() const {
  if (handles_->Info<curl_off_t>(CURLINFO_CONTENT_LENGTH_DOWNLOAD_T) >= 0) return true;
  if (handles_->Info<long>(CURLINFO_HTTP_VERSION) >= CURL_HTTP_VERSION_2_0) return true;
  curl_header* coding = nullptr;
  return curl_easy_header(handles_->easy, "Transfer-Encoding", 0, CURLH_HEADER, -1, &coding) == CURLHE_OK;
}

TransferStep Transfer::step() const {
  if (done_) return TransferStep::kEnd;
  if (!handles_->body.bytes.empty()) return TransferStep::kData;
  if (handles_->Info<curl_off_t>(CURLINFO_STARTTRANSFER_TIME_T) > 0) return TransferStep::kBegin;
  if (handles_->Info<curl_off_t>(CURLINFO_PRETRANSFER_TIME_T) > 0) return TransferStep::kRequest;
  if (handles_->Info<curl_off_t>(CURLINFO_NAMELOOKUP_TIME_T) > 0) return TransferStep::kConnect;
  return TransferStep::kResource;
}

bool Transfer::redirected() const { return handles_->Info<long>(CURLINFO_REDIRECT_COUNT) > 0; }

int Transfer::percent() const {
  const auto total = handles_->Info<curl_off_t>(CURLINFO_CONTENT_LENGTH_DOWNLOAD_T);
  if (total <= 0) return done_ && error_ == 0 ? 100 : 0;
  const auto have = static_cast<curl_off_t>(handles_->body.bytes.size());
  return static_cast<int>(std::min<curl_off_t>(100, have * 100 / total));
}

std::string Transfer::reason() const { return curl_easy_strerror(static_cast<CURLcode>(result_)); }

const std::string& Transfer::content() const { return handles_->body.bytes; }

}  // namespace platform
