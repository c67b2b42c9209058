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

// Unpacks a part in a thread of its own, a few stretches ahead: unpacking takes as long as scanning.
class StretchReader {
 public:
  StretchReader(Package& package, std::string_view part)
      : thread_([this, &package, part] { Unpack(package, part); }) {}
  StretchReader(const StretchReader&) = delete;
  StretchReader& operator=(const StretchReader&) = delete;
  ~StretchReader() {
    {
      const std::lock_guard lock(mutex_);
      enough_ = true;
    }
    changed_.notify_all();
    thread_.join();
  }

  // The next stretch of the part; false at its end. Throws what unpacking it threw, behind the stretches
  // before.
  bool Next(std::string& stretch) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return !ready_.empty() || ended_; });
    if (ready_.empty()) {
      if (failure_) std::rethrow_exception(failure_);
      return false;
    }
    stretch.swap(ready_.front());
    spare_.push_back(std::move(ready_.front()));
    ready_.pop_front();
    lock.unlock();
    changed_.notify_all();
    return true;
  }

 private:
  static constexpr std::size_t kStretch =
      512 * 1024;  // bytes; threads that wait for each other often are slow
  static constexpr std::size_t kAhead = 3;

  void Unpack(Package& package, std::string_view part) {
    std::exception_ptr failure;
    try {
      std::string stretch;
      package.Read(part, [&](std::string_view piece) {
        stretch += piece;
        return stretch.size() < kStretch || Hand(stretch);
      });
      if (!stretch.empty()) Hand(stretch);
    } catch (...) {
      failure = std::current_exception();
    }
    const std::lock_guard lock(mutex_);
    failure_ = failure;
    ended_ = true;
    changed_.notify_all();
  }

  // Leaves a text to fill whose room was used before: making it anew costs more than filling it. False when
  // nobody wants more.
  bool Hand(std::string& stretch) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return ready_.size() < kAhead || enough_; });
    ready_.push_back(std::move(stretch));
    stretch = std::string();
    if (!spare_.empty()) {
      stretch = std::move(spare_.back());
      spare_.pop_back();
      stretch.clear();
    }
    const bool more = !enough_;
    lock.unlock();
    changed_.notify_all();
    return more;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::string> ready_;
  std::vector<std::string> spare_;
  bool ended_ = false, enough_ = false;
  std::exception_ptr failure_;
  std::thread thread_;  // last, so that it finds the others made
};

}  // namespace

void ReadXml(Package& package, std::string_view part, XmlHandler& handler) {
  try {
    XmlScanner scanner(handler);
    StretchReader reader(package, part);
    for (std::string stretch; !handler.Done();) {
      if (!reader.Next(stretch)) {
        scanner.Finish();
        break;
      }
      scanner.Feed(stretch);
    }
  } catch (const SheetError& error) {
    const std::string text = error.what();
    if (!text.starts_with("XML ")) throw;
    throw SheetError(error.reason(), fmt::format("partea {}: {}", part, text));
  }
}

}  // namespace platform::spreadsheet
