// Threads that take the next items until none is left.
#include "linalg/parallel.hpp"  // for in_parallel

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace vbn {

void in_parallel(std::size_t count, std::size_t chunk, int threads, const std::function<item_work()>& begin) {
  std::atomic<std::size_t> next{0};
  std::mutex guard;
  std::exception_ptr failed;
  const auto work = [&] {
    try {
      const item_work item = begin();
      for (std::size_t first = next.fetch_add(chunk); first < count; first = next.fetch_add(chunk))
        for (std::size_t i = first; i < std::min(first + chunk, count); ++i) item(i);
    } catch (...) {
      const std::lock_guard<std::mutex> lock(guard);
      if (!failed) failed = std::current_exception();
      next = count;
    }
  };
  std::vector<std::jthread> helpers;
  try {
    while (static_cast<int>(helpers.size()) + 1 < threads) helpers.emplace_back(work);
  } catch (const std::system_error&) {
    // No more threads are to be had: fewer do the same.
  }
  work();
  helpers.clear();
  if (failed) std::rethrow_exception(failed);
}

}  // namespace vbn
