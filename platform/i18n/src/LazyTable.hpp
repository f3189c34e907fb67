#pragma once

#include <array>
#include <atomic>
#include <memory>

namespace ku::i18n::detail {

/// 256 rows of 256 cells, each row made when it is first asked for and kept from then on.
/// Threads  May be used by any number of threads; two that make a row at once make the same.
template <class Cell>
class LazyTable {
public:
  using Row = std::array<Cell, 256>;

  LazyTable() = default;
  LazyTable(const LazyTable&) = delete;
  LazyTable& operator=(const LazyTable&) = delete;
  ~LazyTable() {
    for (auto& row : rows_) delete row.load(std::memory_order_relaxed);
  }

  /// `make` gives the row of that index if it is not there yet.
  template <class Make>
  const Row& row(unsigned index, Make make) const {
    const Row* row = rows_[index].load(std::memory_order_acquire);
    if (row != nullptr) return *row;
    auto made = std::make_unique<const Row>(make());
    if (rows_[index].compare_exchange_strong(row, made.get(), std::memory_order_acq_rel)) return *made.release();
    return *row;
  }

private:
  mutable std::array<std::atomic<const Row*>, 256> rows_{};
};

}  // namespace ku::i18n::detail
