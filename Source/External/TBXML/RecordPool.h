#pragma once

#include <algorithm>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace tavo {

// Hands out records of one kind from blocks that double in size, so that a tree of any size costs a
// handful of allocations. Records are never given back one by one; all of them go with the pool and
// keep their address until then.
template <typename Record>
class RecordPool {
 public:
  // The first block is the caller's: room for `count` records, suitably aligned, that outlives the
  // pool.
  RecordPool(std::byte* memory, std::size_t count)
      : free_{reinterpret_cast<Record*>(memory)},
        end_{free_ + count},
        size_{std::clamp(2 * count, smallestBlock, largestBlock)} {}
  ~RecordPool() {
    while (newest_ != nullptr) {
      ::operator delete(std::exchange(newest_, newest_->previous));
    }
  }
  RecordPool(const RecordPool&) = delete;
  RecordPool& operator=(const RecordPool&) = delete;

  // A fresh record made of `fields`.
  template <typename... Fields>
  Record* next(Fields&&... fields) {
    if (free_ == end_) [[unlikely]] {
      grow();
    }
    return ::new (static_cast<void*>(free_++)) Record{std::forward<Fields>(fields)...};
  }

 private:
  static_assert(std::is_trivially_destructible_v<Record>, "blocks are dropped as raw memory");
  static constexpr std::size_t smallestBlock = 32;
  static constexpr std::size_t largestBlock = 16384;

  struct alignas(Record) Block {
    Block* previous;
  };

  void grow() {
    void* const memory = ::operator new(sizeof(Block) + size_ * sizeof(Record));
    newest_ = ::new (memory) Block{newest_};
    free_ = reinterpret_cast<Record*>(newest_ + 1);
    end_ = free_ + size_;
    size_ = std::min(2 * size_, largestBlock);
  }

  Record* free_;
  Record* end_;
  std::size_t size_;  // of the next block, in records
  Block* newest_ = nullptr;
};

}  // namespace tavo
