#include <regex/parser.h>
#include <regex/regex_error.h>

#include <algorithm>
#include <string_view>

namespace regex_detail {
namespace {

constexpr std::string_view white_space = " \t\n\v\f\r";

bool is_digit(char byte) {
  return byte >= '0' && byte <= '9';
}
bool is_letter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

std::size_t bit(char byte) {
  return static_cast<unsigned char>(byte);
}

ByteSet range(char first, char last) {
  ByteSet set;
  for (std::size_t byte = bit(first); byte <= bit(last); ++byte) set.set(byte);
  return set;
}

ByteSet single(char byte) {
  return range(byte, byte);
}

ByteSet any_of(std::string_view bytes) {
  ByteSet set;
  for (const char byte : bytes) set.set(bit(byte));
  return set;
}

// The byte of a set that has just one.
std::size_t only_byte(const ByteSet& set) {
  std::size_t only = 0;
  for_each_byte(set, [&](std::size_t byte) { only = byte; });
  return only;
}

// What an escaped letter stands for; the empty set where it stands for nothing.
ByteSet escaped_letter(char letter) {
  switch (letter) {
    case 'd':
      return range('0', '9');
    case 'D':
      return ~range('0', '9');
    case 'w':
      return range('0', '9') | range('A', 'Z') | range('a', 'z') | single('_');
    case 'W':
      return ~escaped_letter('w');
    case 's':
      return any_of(white_space);
    case 'S':
      return ~any_of(white_space);
    case 't':
      return single('\t');
    case 'n':
      return single('\n');
    case 'r':
      return single('\r');
    case 'f':
      return single('\f');
    case 'v':
      return single('\v');
    default:
      return {};
  }
}

class Parser {
 public:
  Parser(const std::string& pattern, bool extended_syntax) : pattern_(pattern), extended_(extended_syntax) {}

  SyntaxTree parse() {
    open_.reserve(4);
    tree_.nodes.reserve(std::min<std::size_t>(pattern_.size(), 2 * most_instructions));
    tree_.sets.reserve(8);
    open_.push_back({0, 0, {}, {}, false});
    for (skip_ignored(); !at_end(); skip_ignored()) read_item();
    if (open_.size() > 1)
      fail(open_.back().offset, "the bracket ( is never closed; write \\( for the byte itself");
    tree_.root = close_alternatives();
    return std::move(tree_);
  }

 private:
  struct Chain {
    NodeIndex first = no_node;
    NodeIndex last = no_node;
  };

  // A bracket that waits for its end; the first is the pattern itself.
  struct Open {
    unsigned int offset;
    unsigned int capture;  // its number, 0 for none
    Chain alternatives;
    Chain sequence;
    bool has_alternatives;
  };

  struct Quantifier {
    unsigned int minimum;
    unsigned int maximum;
    unsigned int length;  // in the pattern; 0 when there is none
  };

  [[noreturn]] static void fail(std::size_t offset, const std::string& reason) {
    throw RegexError(static_cast<unsigned int>(offset), reason);
  }

  bool at_end() const { return position_ == pattern_.size(); }
  bool next_is(char byte) const { return !at_end() && pattern_[position_] == byte; }
  bool next_are(std::string_view bytes) const {
    return pattern_.compare(position_, bytes.size(), bytes) == 0;
  }

  void skip_ignored() {
    if (!extended_) return;
    while (!at_end()) {
      if (next_is('#')) {
        position_ = std::min(pattern_.find('\n', position_), pattern_.size());
      } else if (white_space.find(pattern_[position_]) != std::string_view::npos) {
        ++position_;
      } else {
        return;
      }
    }
  }

  void read_item() {
    const std::size_t offset = position_;
    switch (pattern_[position_]) {
      case '(':
        return open_bracket();
      case ')':
        if (open_.size() == 1) fail(offset, "the bracket ) was never opened; write \\) for the byte itself");
        ++position_;
        return add_item(close_bracket());
      case '|':
        ++position_;
        return end_alternative();
      case '^':
        ++position_;
        return append(open_.back().sequence, add_node(Node::text_start, offset));
      case '$':
        ++position_;
        return append(open_.back().sequence, add_node(Node::text_end, offset));
      case '.':
        ++position_;
        return add_item(add_bytes(offset, ~single('\n')));
      case '[': {
        const ByteSet set = read_class();
        return add_item(add_bytes(offset, set));
      }
      case '\\': {
        const ByteSet set = read_escape();
        return add_item(add_bytes(offset, set));
      }
      default:
        if (quantifier().length > 0) {
          fail(offset,
               "there is nothing to repeat; write \\" + pattern_.substr(offset, 1) + " for the byte itself");
        }
        return add_item(add_bytes(offset, single(pattern_[position_++])));
    }
  }

  // Where the quantifiers `* + ? {n} {n,} {n,m}` are decoded, without the lazy mark.
  Quantifier quantifier() const {
    if (at_end()) return {};
    switch (pattern_[position_]) {
      case '*':
        return {0, unbounded, 1};
      case '+':
        return {1, unbounded, 1};
      case '?':
        return {0, 1, 1};
      case '{':
        return counted_quantifier();
      default:
        return {};
    }
  }

  Quantifier counted_quantifier() const {
    std::size_t end = position_ + 1;
    const auto byte_is = [&](char byte) { return end < pattern_.size() && pattern_[end] == byte; };
    const auto count = [&] {
      unsigned int value = 0;
      for (; end < pattern_.size() && is_digit(pattern_[end]); ++end) {
        value =
            std::min(value * 10 + static_cast<unsigned int>(pattern_[end] - '0'), highest_repeat_count + 1);
      }
      return value;
    };
    if (end == pattern_.size() || !is_digit(pattern_[end])) return {};
    const unsigned int minimum = count();
    unsigned int maximum = minimum;
    if (byte_is(',')) {
      ++end;
      maximum = byte_is('}') ? unbounded : count();
    }
    if (!byte_is('}')) return {};
    return {minimum, maximum, static_cast<unsigned int>(end + 1 - position_)};
  }

  // Appends what was just read, under the quantifier that follows it.
  void add_item(NodeIndex item) {
    skip_ignored();
    const std::size_t offset = position_;
    const Quantifier found = quantifier();
    if (found.length > 0) {
      if (found.minimum > highest_repeat_count ||
          (found.maximum != unbounded && found.maximum > highest_repeat_count)) {
        fail(offset, "a repeat count is at most " + std::to_string(highest_repeat_count));
      }
      if (found.minimum > found.maximum) fail(offset, "the lower repeat count is above the higher one");
      position_ += found.length;
      skip_ignored();
      const bool greedy = !next_is('?');
      if (!greedy) ++position_;
      item = repeat(item, found, greedy);
    }
    // What is empty leaves no trace, so that no repeat writes out nothing again and again.
    if (tree_.nodes[item].kind != Node::empty) append(open_.back().sequence, item);
  }

  NodeIndex repeat(NodeIndex item, const Quantifier& quantifier, bool greedy) {
    if (tree_.nodes[item].kind == Node::empty) return item;
    const unsigned int offset = tree_.nodes[item].offset;
    if (quantifier.maximum == 0) return add_node(Node::empty, offset);
    const NodeIndex index = add_node(Node::repeat, offset, item);
    tree_.nodes[index].minimum = quantifier.minimum;
    tree_.nodes[index].maximum = quantifier.maximum;
    tree_.nodes[index].greedy = greedy;
    return index;
  }

  void open_bracket() {
    const std::size_t offset = position_++;
    unsigned int capture = 0;
    if (next_is('?')) {
      if (!next_are("?:")) {
        fail(offset, "of the groups that start with (? only (?: is supported, no lookaround and no options");
      }
      position_ += 2;
    } else {
      if (tree_.groups == most_groups) {
        fail(offset, "more than " + std::to_string(most_groups) +
                         " capture groups; use (?: where no capture is needed");
      }
      capture = ++tree_.groups;
    }
    if (open_.size() > deepest_nesting) {
      fail(offset, "brackets are nested deeper than " + std::to_string(deepest_nesting));
    }
    open_.push_back({static_cast<unsigned int>(offset), capture, {}, {}, false});
  }

  NodeIndex close_bracket() {
    const unsigned int offset = open_.back().offset;
    const unsigned int capture = open_.back().capture;
    const NodeIndex content = close_alternatives();
    if (capture == 0) return content;
    const NodeIndex index = add_node(Node::group, offset, content);
    tree_.nodes[index].number = capture;
    return index;
  }

  void end_alternative() {
    Open& open = open_.back();
    append(open.alternatives, close_sequence());
    open.sequence = {};
    open.has_alternatives = true;
  }

  NodeIndex close_alternatives() {
    const bool single_alternative = !open_.back().has_alternatives;
    NodeIndex content = close_sequence();
    if (!single_alternative) {
      append(open_.back().alternatives, content);
      content = add_node(Node::alternatives, open_.back().offset, open_.back().alternatives.first);
    }
    open_.pop_back();
    return content;
  }

  // A sequence of none is empty, a sequence of one is that one.
  NodeIndex close_sequence() {
    const Chain items = open_.back().sequence;
    if (items.first == no_node) return add_node(Node::empty, open_.back().offset);
    if (items.first == items.last) return items.first;
    return add_node(Node::sequence, tree_.nodes[items.first].offset, items.first);
  }

  void append(Chain& chain, NodeIndex node) {
    (chain.first == no_node ? chain.first : tree_.nodes[chain.last].next_sibling) = node;
    chain.last = node;
  }

  NodeIndex add_node(Node::Kind kind, std::size_t offset, NodeIndex first_child = no_node) {
    if (tree_.nodes.size() == 2 * most_instructions) fail(offset, "the pattern is too long");
    Node node;
    node.kind = kind;
    node.offset = static_cast<unsigned int>(offset);
    node.first_child = first_child;
    tree_.nodes.push_back(node);
    return static_cast<NodeIndex>(tree_.nodes.size() - 1);
  }

  NodeIndex add_bytes(std::size_t offset, const ByteSet& set) {
    const NodeIndex index = add_node(Node::bytes, offset);
    const auto known = std::find(tree_.sets.begin(), tree_.sets.end(), set);
    tree_.nodes[index].number = static_cast<unsigned int>(known - tree_.sets.begin());
    if (known == tree_.sets.end()) tree_.sets.push_back(set);
    return index;
  }

  ByteSet read_escape() {
    const std::size_t offset = position_++;
    if (at_end()) fail(offset, "nothing follows the \\; write \\\\ for the byte itself");
    const char byte = pattern_[position_++];
    if (is_digit(byte)) fail(offset, "back references and octal escapes are not supported");
    if (!is_letter(byte)) return single(byte);
    const ByteSet set = escaped_letter(byte);
    if (set.none()) fail(offset, std::string("the escape \\") + byte + " is unknown");
    return set;
  }

  // One byte of a class, or an escape that stands for several.
  ByteSet read_class_member(std::size_t class_offset) {
    if (at_end()) fail(class_offset, "the class has no closing ]");
    if (next_is('\\')) return read_escape();
    const char byte = pattern_[position_++];
    if (byte == '[' && (next_is(':') || next_is('.') || next_is('='))) {
      fail(position_ - 1, "named classes are not supported; write \\[ for the byte itself");
    }
    return single(byte);
  }

  ByteSet read_class() {
    const std::size_t class_offset = position_++;
    const bool negated = next_is('^');
    if (negated) ++position_;
    ByteSet set;
    // A ] that comes first is a member.
    for (bool first = true; first || !next_is(']'); first = false) {
      const std::size_t offset = position_;
      ByteSet member = read_class_member(class_offset);
      if (next_is('-') && !next_are("-]")) {
        ++position_;
        const ByteSet last = read_class_member(class_offset);
        member = class_range(offset, member, last);
      }
      set |= member;
    }
    ++position_;
    return negated ? ~set : set;
  }

  static ByteSet class_range(std::size_t offset, const ByteSet& first, const ByteSet& last) {
    if (first.count() != 1 || last.count() != 1) {
      fail(offset, "a range in a class needs one byte at each end; write \\- for the byte itself");
    }
    const std::size_t lower = only_byte(first);
    const std::size_t upper = only_byte(last);
    if (lower > upper) fail(offset, "the range in the class is in the wrong order");
    return range(static_cast<char>(lower), static_cast<char>(upper));
  }

  const std::string& pattern_;
  const bool extended_;
  std::size_t position_ = 0;
  std::vector<Open> open_;
  SyntaxTree tree_;
};

}  // namespace

SyntaxTree parse(const std::string& pattern, bool extended_syntax) {
  return Parser(pattern, extended_syntax).parse();
}

}  // namespace regex_detail
