#pragma once

#include <sys/resource.h>

namespace bench {

/// Peak resident memory of this process so far.
inline double PeakMemoryMiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;  // Linux counts KiB
}

}  // namespace bench
