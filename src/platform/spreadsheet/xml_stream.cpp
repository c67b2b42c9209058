#include "platform/spreadsheet/xml_stream.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

#include "platform/spreadsheet/sheet.h"
#include "platform/spreadsheet/xml_scanner.h"

namespace platform::spreadsheet {
namespace {

// Unpacks a part in a thread of its own, a few pieces ahead: unpacking takes as long as scanning.
class PieceReader {
 public:
  PieceReader(Package& package, std::string_view part)
      : thread_([this, &package, part] { Unpack(package, part); }) {}
  PieceReader(const PieceReader&) = delete;
  PieceReader& operator=(const PieceReader&) = delete;
  ~PieceReader() {
    {
      const std::lock_guard lock(mutex_);
      enough_ = true;
    }
    changed_.notify_all();
    thread_.join();
  }

  // False at the end of the part. Throws what unpacking it threw, behind the pieces before.
  bool Next(std::string& piece) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return !pieces_.empty() || ended_; });
    if (pieces_.empty()) {
      if (failure_) std::rethrow_exception(failure_);
      return false;
    }
    piece.swap(pieces_.front());
    pieces_.pop_front();
    lock.unlock();
    changed_.notify_all();
    return true;
  }

 private:
  static constexpr std::size_t kAhead = 4;

  void Unpack(Package& package, std::string_view part) {
    std::exception_ptr failure;
    try {
      package.Read(part, [&](std::string_view piece) {
        std::string copy(piece);
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return pieces_.size() < kAhead || enough_; });
        pieces_.push_back(std::move(copy));
        const bool more = !enough_;
        lock.unlock();
        changed_.notify_all();
        return more;
      });
    } catch (...) {
      failure = std::current_exception();
    }
    const std::lock_guard lock(mutex_);
    failure_ = failure;
    ended_ = true;
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::string> pieces_;
  bool ended_ = false, enough_ = false;
  std::exception_ptr failure_;
  std::thread thread_;  // last, so that it finds the others made
};

}  // namespace

void ReadXml(Package& package, std::string_view part, XmlHandler& handler) {
  try {
    XmlScanner scanner(handler);
    PieceReader reader(package, part);
    for (std::string piece; !handler.Done();) {
      if (!reader.Next(piece)) {
        scanner.Finish();
        break;
      }
      scanner.Feed(piece);
    }
  } catch (const SheetError& error) {
    const std::string text = error.what();
    if (!text.starts_with("XML ")) throw;
    throw SheetError(error.reason(), fmt::format("partea {}: {}", part, text));
  }
}

}  // namespace platform::spreadsheet
