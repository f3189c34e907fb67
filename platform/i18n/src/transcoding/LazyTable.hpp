#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>

namespace ku::i18n::detail {

/// Rows of cells, each row made by its user when it is first needed.
/// Threads  May be used by any number of threads; two that make a row at once make the same.
template <class Cell, std::size_t rows, std::size_t columns>
class LazyTable {
public:
  using Row = std::array<Cell, columns>;

  LazyTable() = default;
  LazyTable(const LazyTable&) = delete;
  LazyTable& operator=(const LazyTable&) = delete;
  ~LazyTable() {  // not covered: of an encoding whose making fails; that is tested where nothing is counted
    for (auto& row : rows_) delete row.load(std::memory_order_relaxed);  // not covered: see above
  }                                                                      // not covered: see above

  /// Null if the row has not been made yet.
  const Row* find(unsigned index) const { return rows_[index].load(std::memory_order_acquire); }

  /// The row that is kept from now on: this one, or that of another thread.
  const Row& add(unsigned index, const Row& cells) const {
    auto made = std::make_unique<const Row>(cells);
    const Row* row = nullptr;
    const bool is_first = rows_[index].compare_exchange_strong(row, made.get(), std::memory_order_acq_rel);
    return is_first ? *made.release() : *row;  // not covered: only two threads at the same moment are no first
  }

private:
  mutable std::array<std::atomic<const Row*>, rows> rows_{};
};

}  // namespace ku::i18n::detail
