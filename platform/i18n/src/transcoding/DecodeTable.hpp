#pragma once

#include "converters/Encoding.hpp"
#include "transcoding/kernels/tables.hpp"

#include <cstddef>
#include <memory>
#include <mutex>
#include <string_view>

namespace ku::i18n::detail {

/// The characters of a code page's byte sequences. ICU is asked once for each sequence, when a text first has it.
///
/// Threads  Any number of threads may use it.
class DecodeTable {
public:
  explicit DecodeTable(const Encoding& encoding);
  ~DecodeTable();
  DecodeTable(const DecodeTable&) = delete;
  DecodeTable& operator=(const DecodeTable&) = delete;

  const DecodeNode& root() const noexcept { return root_; }

  /// The first sequence of a text.
  struct Found {
    Entry entry;         // never 0; a prefix if the text ends within the sequence
    std::size_t length;  // length of the sequence
  };
  /// Requires: `text` is not empty.
  Found find(std::string_view text) const;

private:
  /// The largest number of nodes: GB18030 would have 160,000 of a KiB each. Sequences beyond it are converted by ICU.
  static constexpr unsigned most_nodes = 8192;

  Entry look_up(DecodeNode& node, std::string_view sequence) const;
  Entry ask_icu(std::string_view sequence) const;
  bool add_child(DecodeNode& node, unsigned byte) const;

  const Encoding& encoding_;
  mutable DecodeNode root_;
  mutable std::mutex mutex_;  // for adding to the tree and for the members below
  mutable std::unique_ptr<IcuConverter> icu_;
  mutable unsigned nodes_ = 1;
};

}  // namespace ku::i18n::detail
