#pragma once

#include "converters/Encoding.hpp"
#include "transcoding/kernels/tables.hpp"

#include <cstddef>
#include <memory>
#include <mutex>
#include <string_view>

namespace ku::i18n::detail {

/// What a code page says of byte sequences: asked of ICU once for each sequence, when a text first has it.
///
/// Threads  May be used by any number of threads.
class DecodeTable {
public:
  explicit DecodeTable(const Encoding& encoding);
  ~DecodeTable();
  DecodeTable(const DecodeTable&) = delete;
  DecodeTable& operator=(const DecodeTable&) = delete;

  const DecodeNode& root() const noexcept { return root_; }

  /// What the start of a text is.
  struct Found {
    Entry entry;         // never 0; a prefix if the text ends within the sequence
    std::size_t length;  // of the sequence that the entry is for
  };
  /// Requires: `text` is not empty.
  Found find(std::string_view text) const;

private:
  /// So many nodes at most: GB18030 has 160,000, a KiB each. Sequences beyond are asked of ICU each time.
  static constexpr unsigned most_nodes = 8192;

  Entry look_up(DecodeNode& node, std::string_view sequence) const;
  Entry ask(std::string_view sequence) const;
  bool add_child(DecodeNode& node, unsigned byte) const;

  const Encoding& encoding_;
  mutable DecodeNode root_;
  mutable std::mutex mutex_;  // of what follows, and of adding to the tree
  mutable std::unique_ptr<IcuConverter> icu_;
  mutable unsigned nodes_ = 1;
};

}  // namespace ku::i18n::detail
