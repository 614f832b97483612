#include <regex/program.h>
#include <regex/regex_error.h>

#include <string>
#include <utility>

namespace regex_detail {
namespace {

// A repeat whose body can match nothing must end after an iteration that took no byte. Whether it took one is
// known while compiling: a node inside such repeats is written out with several entries and several ways to
// go on, one for each answer to "how many of the repeats around me, counted from the outermost, have taken a
// byte in their present iteration?". If a repeat has taken one, those around it have, so the answer is one
// number; after a byte is taken it is the number of repeats. Outside of such repeats, and that is nearly
// always, there is one entry and one way on.
using Ways = std::vector<InstructionIndex>;

class Compiler {
 public:
  explicit Compiler(SyntaxTree tree) : tree_(std::move(tree)) {}

  Program compile() {
    program_.slots = 2 * (tree_.groups + 1);
    const Node whole;
    const Ways done{add(whole, {Instruction::match, 0, 0})};
    program_.start = save(whole, 0, write(tree_.root, save(whole, 1, done))).front();
    program_.sets = std::move(tree_.sets);
    return std::move(program_);
  }

 private:
  InstructionIndex add(const Node& node, Instruction instruction) {
    if (program_.instructions.size() == most_instructions) {
      throw RegexError(node.offset, "with its repeats written out the pattern takes more than " +
                                        std::to_string(most_instructions) + " steps");
    }
    program_.instructions.push_back(instruction);
    return static_cast<InstructionIndex>(program_.instructions.size() - 1);
  }

  // Programs are written from their end: the ways on come in, the ways to enter come out.
  // Recursion is as deep as the pattern's brackets, which the parser limits.
  Ways write(NodeIndex index, Ways next) {
    const Node& node = tree_.nodes[index];
    switch (node.kind) {
      case Node::empty:
        return next;
      case Node::bytes:
        return Ways(next.size(), add(node, {Instruction::bytes, next.back(), node.number}));
      case Node::text_start:
        return each_way(next, [&](InstructionIndex way) {
          return add(node, {Instruction::text_start, way, 0});
        });
      case Node::text_end:
        return each_way(next, [&](InstructionIndex way) {
          return add(node, {Instruction::text_end, way, 0});
        });
      case Node::group:
        return save(node, 2 * node.number, write(node.first_child, save(node, 2 * node.number + 1, next)));
      case Node::sequence:
        return write_sequence(node.first_child, std::move(next));
      case Node::alternatives:
        return write_alternatives(node, next);
      case Node::repeat:
        return write_repeat(node, next);
    }
    return next;
  }

  template <class Write>
  static Ways each_way(const Ways& next, Write write_one) {
    Ways entry(next.size());
    for (std::size_t way = 0; way < next.size(); ++way) {
      entry[way] = way > 0 && next[way] == next[way - 1] ? entry[way - 1] : write_one(next[way]);
    }
    return entry;
  }

  Ways save(const Node& node, std::uint32_t slot, const Ways& next) {
    return each_way(next, [&](InstructionIndex way) { return add(node, {Instruction::save, way, slot}); });
  }

  Ways write_sequence(NodeIndex first, Ways next) {
    std::vector<NodeIndex> items;
    for (NodeIndex item = first; item != no_node; item = tree_.nodes[item].next_sibling)
      items.push_back(item);
    for (auto item = items.rbegin(); item != items.rend(); ++item) next = write(*item, std::move(next));
    return next;
  }

  Ways write_alternatives(const Node& node, const Ways& next) {
    std::vector<Ways> entries;
    for (NodeIndex each = node.first_child; each != no_node; each = tree_.nodes[each].next_sibling) {
      entries.push_back(write(each, next));
    }
    Ways entry = std::move(entries.back());
    for (std::size_t each = entries.size() - 1; each-- > 0;) entry = choice(node, entries[each], entry);
    return entry;
  }

  Instruction fork(bool prefer_first, InstructionIndex first, InstructionIndex second) {
    return prefer_first ? Instruction{Instruction::fork, first, second}
                        : Instruction{Instruction::fork, second, first};
  }

  Ways choice(const Node& node, const Ways& first, const Ways& second) {
    Ways entry(first.size());
    for (std::size_t way = 0; way < entry.size(); ++way) {
      const bool same = way > 0 && first[way] == first[way - 1] && second[way] == second[way - 1];
      entry[way] = same ? entry[way - 1] : add(node, fork(node.greedy, first[way], second[way]));
    }
    return entry;
  }

  Ways write_repeat(const Node& node, const Ways& next) {
    Ways entry = next;
    unsigned int copies = node.minimum;
    if (node.maximum == unbounded) {
      entry = write_loop(node, next);
      if (node.minimum > 0) --copies;
    } else {
      // x{0,2} is (x(x)?)?, where every second choice leaves for good.
      for (unsigned int each = node.minimum; each < node.maximum; ++each) {
        entry = choice(node, write(node.first_child, std::move(entry)), next);
      }
    }
    for (; copies > 0; --copies) entry = write(node.first_child, std::move(entry));
    return entry;
  }

  Ways write_loop(const Node& node, const Ways& next) {
    const InstructionIndex again = add(node, {Instruction::fork, 0, 0});
    // An iteration that took a byte may be followed by another; one that took none goes on to what follows.
    Ways after_body(next.size(), again);
    if (tree_.nodes[node.first_child].can_be_empty) {
      after_body = next;
      after_body.push_back(again);
    }
    Ways body = write(node.first_child, after_body);
    body.resize(next.size());
    program_.instructions[again] = fork(node.greedy, body.back(), next.back());
    return node.minimum == 0 ? choice(node, body, next) : body;
  }

  SyntaxTree tree_;
  Program program_;
};

}  // namespace

Program compile(SyntaxTree tree) {
  return Compiler(std::move(tree)).compile();
}

}  // namespace regex_detail
