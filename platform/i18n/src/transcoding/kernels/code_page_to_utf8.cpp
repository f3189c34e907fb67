#include "transcoding/kernels/kernels.hpp"
#include "transcoding/kernels/utf8.hpp"
#include "transcoding/kernels/windows.hpp"

#include <utility>

namespace ku::i18n::detail {
namespace {

// Converts windows of 32 bytes of a single-byte code page. Stops at an entry that is not a character of up to three
// bytes of UTF-8: the byte has no character, or has not been looked up yet.
class SingleByteWindows {
public:
  static constexpr std::size_t most_read = 2 * window_size;
  static constexpr std::size_t most_written = window_size * sizeof(Entry);

  explicit SingleByteWindows(const DecodeNode& root) noexcept : root_(root) {}

  // A window with few characters beyond ASCII.
  //
  // Invariant  the window has been copied as if all of it were ASCII; the output before the lowest bit of `non_ascii`
  //            is final.
  // Reads      up to two windows: after each character, a whole window is copied again to its new position.
  // Writes     at most three bytes for each character, and a window after the last one.
  bool sparse(ByteCursor& c, std::uint32_t non_ascii) const noexcept {
    const char* const from = c.from;
    char* to = c.to;  // the output of the window, advanced by the growth of its characters
    for (; non_ascii != 0; non_ascii &= non_ascii - 1) {
      const std::size_t at = first_bit(non_ascii);
      const Entry bytes = root_.entry(byte_at(from, at));
      if (bytes <= 0) {
        c.from = from + at;
        c.to = to + at;
        return false;
      }
      std::memcpy(to + at, &bytes, sizeof(bytes));
      to += length_of(bytes) - 1;
      copy_window(from + at + 1, to + at + 1);
    }
    c.from = from + window_size;
    c.to = to + window_size;
    return true;
  }

  // A window of another script: each byte by its entry, without any other branch.
  bool dense(ByteCursor& c) const noexcept {
    ByteCursor now = c;
    bool known = true;
#pragma GCC unroll 32
    for (std::size_t at = 0; at < window_size; ++at) {
      const Entry bytes = root_.entry(byte_at(now.from, 0));
      if (bytes <= 0) {
        known = false;
        break;
      }
      put(now, bytes);
      ++now.from;
    }
    c = now;
    return known;
  }

private:
  const DecodeNode& root_;
};

// Converts a character of more than two bytes, or beyond U+FFFF. `entry` is the entry of its first two bytes, in
// `node`.
Step convert_long(const char* from, char* to, const DecodeNode* node, Entry entry) noexcept {
  std::size_t length = 2;
  for (; entry < 0 && kind_of(entry) == Kind::prefix && length < 4; ++length) {
    node = &node->child(byte_at(from, length - 1));
    entry = node->entry(byte_at(from, length));
  }
  if (entry > 0) return put_entry(length, entry, to);
  if (entry == 0 || kind_of(entry) != Kind::supplementary) return {};
  return {length, put_utf8(value_of(entry), to)};
}

// Converts one character. Inlined by force: clang would call it, which takes 5 more instructions for each byte of
// Shift_JIS.
struct MultiByteStep {
  [[gnu::always_inline]] Step operator()(const char* from, char* to) const noexcept {
    const auto first = byte_at(from, 0);
    Entry bytes = root.entry(first);
    if (bytes > 0) return put_entry(1, bytes, to);
    const auto* const node = children[first].load(std::memory_order_acquire);
    bytes = node->entry(byte_at(from, 1));
    return bytes > 0 ? put_entry(2, bytes, to) : convert_long(from, to, node, bytes);
  }

  const DecodeNode& root;
  const DecodeNode::Children& children;
};

}  // namespace

constinit const DecodeNode DecodeNode::none{};
constinit const DecodeNode::Children DecodeNode::no_children =
    []<std::size_t... byte>(std::index_sequence<byte...>) constexpr {
  return Children{{(static_cast<void>(byte), &none)...}};
}
(std::make_index_sequence<256>());

// Everything in one function keeps the cursor in registers.
[[gnu::flatten]] ByteCursor single_byte_to_utf8(ByteCursor c, const DecodeNode& root, bool keeps_ascii) noexcept {
  c = convert_windows(c, keeps_ascii, SingleByteWindows(root));
  return convert_by_steps(c, keeps_ascii, [&root](const char* from, char* to) {
    const Entry bytes = root.entry(byte_at(from, 0));
    return bytes > 0 ? put_entry(1, bytes, to) : Step{};
  });
}

ByteCursor multi_byte_to_utf8(ByteCursor c, const DecodeNode& root, bool keeps_ascii) noexcept {
  return convert_by_steps(c, keeps_ascii, MultiByteStep{root, *root.children.load(std::memory_order_acquire)});
}

}  // namespace ku::i18n::detail
