// Independent items shared out to threads.
#pragma once

#include <cstddef>
#include <functional>

namespace vbn {

// What one thread does with an item.
using item_work = std::function<void(std::size_t)>;

// Calls the work of every item from 0 to `count`, `chunk` neighbours at a time. Each of the `threads`
// threads, the caller among them, gets its own work, and with it its own memory, from `begin`. The first
// exception ends the others after the item at hand and is thrown to the caller.
void in_parallel(std::size_t count, std::size_t chunk, int threads, const std::function<item_work()>& begin);

}  // namespace vbn
