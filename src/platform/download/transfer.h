#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/download/download.h"

namespace platform {

/// How far a transfer has come; each step is reached once, in this order, though some may be left out.
enum class TransferStep { kCache, kResource, kConnect, kRequest, kBegin, kData, kEnd };

/// One address fetched into memory, in short turns, so that the caller's window stays alive between them.
class Transfer {
 public:
  Transfer(const std::string& address, const DownloadOptions& options);
  ~Transfer();
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  /// Works on until nothing is to be done right now, waits shortly for more; true while the transfer runs.
  bool Turn();

  TransferStep step() const;
  bool redirected() const;
  int percent() const;  ///< 0 while the whole length is not known
  /// 0 for a whole body; else the server's status or the client's own number.
  int error() const { return error_; }
  /// The client's own words for the error.
  std::string reason() const;
  const std::string& content() const;

 private:
  struct Handles;
  void Finish(int result);
  bool IsFramed() const;
  bool TimedOut();

  std::unique_ptr<Handles> handles_;
  DownloadOptions options_;
  bool done_ = false;
  int error_ = 0, result_ = 0;
};

}  // namespace platform
