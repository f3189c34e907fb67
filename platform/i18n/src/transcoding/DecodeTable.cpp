#include "transcoding/DecodeTable.hpp"

#include "transcoding/kernels/utf8.hpp"

#include <array>
#include <cstring>

namespace ku::i18n::detail {
namespace {

// The longest sequence of any code page. If ICU takes a sequence of this length for a prefix, ICU converts it.
constexpr std::size_t most_bytes = 4;

Entry character_entry(char32_t code) {
  if (code > 0xFFFF) return special_entry(Kind::supplementary, code);
  std::array<char, 4> utf8{};
  const auto length = put_utf8(code, utf8.data());
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, utf8.data(), length);
  return static_cast<Entry>(bytes | static_cast<std::uint32_t>(length) << 24);
}

void delete_below(const DecodeNode& node) {
  const auto* const children = node.children.load(std::memory_order_relaxed);
  if (children == &DecodeNode::no_children) return;
  for (const auto& child : *children) {
    const auto* const below = child.load(std::memory_order_relaxed);
    if (below == &DecodeNode::none) continue;
    delete_below(*below);
    delete below;
  }
  delete children;
}

}  // namespace

DecodeTable::DecodeTable(const Encoding& encoding) : encoding_(encoding) {}

DecodeTable::~DecodeTable() { delete_below(root_); }

DecodeTable::Found DecodeTable::find(std::string_view text) const {
  DecodeNode* node = &root_;
  for (std::size_t length = 1;; ++length) {
    const auto byte = static_cast<unsigned char>(text[length - 1]);
    Entry entry = node->entry(byte);
    if (entry == 0) entry = look_up(*node, text.substr(0, length));
    const bool is_prefix = entry < 0 && kind_of(entry) == Kind::prefix;
    if (!is_prefix || length == text.size()) return {entry, length};
    node = const_cast<DecodeNode*>(&node->child(byte));  // not const: `add_child` has made it
  }
}

Entry DecodeTable::look_up(DecodeNode& node, std::string_view sequence) const {
  const std::lock_guard lock(mutex_);
  const auto byte = static_cast<unsigned char>(sequence.back());
  // Another thread may have added it, and its child, since the caller looked.
  if (const Entry known = node.entry(byte); known != 0) return known;
  Entry entry = ask_icu(sequence);
  const bool is_prefix = entry < 0 && kind_of(entry) == Kind::prefix;
  if (is_prefix && (sequence.size() == most_bytes || !add_child(node, byte))) entry = special_entry(Kind::dependent);
  node.entries[byte].store(entry, std::memory_order_release);
  return entry;
}

Entry DecodeTable::ask_icu(std::string_view sequence) const {
  if (!icu_) icu_ = encoding_.make_converter(false);
  std::array<char16_t, 16> units{};
  DecodingCursor c{sequence.data(), sequence.data() + sequence.size(), units.data(), units.data() + units.size()};
  const UErrorCode status = icu_->try_decode(c, false);
  const auto written = static_cast<std::size_t>(c.to - units.data());
  if (U_FAILURE(status)) {
    if (status == U_MEMORY_ALLOCATION_ERROR) check(status);
    const auto length = icu_->malformed_length();
    const bool is_plain = written == 0 && length > 0 && length <= sequence.size();
    return is_plain ? special_entry(Kind::malformed, static_cast<std::uint32_t>(length))
                    : special_entry(Kind::dependent);
  }
  const bool is_pending = icu_->decoding_pending() != 0;
  if (is_pending && written == 0) return special_entry(Kind::prefix);
  if (!is_pending && written == 1 && !U16_IS_SURROGATE(units[0])) return character_entry(units[0]);
  if (!is_pending && written == 2 && U16_IS_LEAD(units[0]) && U16_IS_TRAIL(units[1]))
    return character_entry(static_cast<char32_t>(U16_GET_SUPPLEMENTARY(units[0], units[1])));
  return special_entry(Kind::dependent);
}

// If this throws, the tree is unchanged.
bool DecodeTable::add_child(DecodeNode& node, unsigned byte) const {
  if (nodes_ == most_nodes) return false;
  const auto* children = node.children.load(std::memory_order_relaxed);
  if (children == &DecodeNode::no_children) {
    auto added = std::make_unique<DecodeNode::Children>();
    for (auto& child : *added) child.store(&DecodeNode::none, std::memory_order_relaxed);
    children = added.release();
    node.children.store(children, std::memory_order_release);
  }
  const_cast<DecodeNode::Children&>(*children)[byte].store(new DecodeNode, std::memory_order_release);
  ++nodes_;
  return true;
}

}  // namespace ku::i18n::detail
