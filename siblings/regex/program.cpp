#include <regex/program.h>
#include <regex/regex_error.h>

#include <algorithm>
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
//
// Programs are written from their end, so a node's ways to enter are the ways on of what is before it. They
// are on a stack, `width_` of them for each node that is being written, and nothing recurses.
class Compiler {
 public:
  explicit Compiler(SyntaxTree tree)
      : tree_(std::move(tree)),
        extents_(extents(tree_)),
        program_{{}, std::move(tree_.sets), TagPlan(tree_, extents_), 0} {
    program_.instructions.reserve(2 * tree_.nodes.size());
    tasks_.reserve(tree_.nodes.size());
  }

  Program compile() {
    const Node whole;
    ways_.push_back(add(whole, {Instruction::match}));
    later(Task::write, tree_.root);
    while (!tasks_.empty()) {
      const Task task = tasks_.back();
      tasks_.pop_back();
      carry_out(task);
    }
    program_.start = add(whole, {Instruction::tag, ways_.back(), TagPlan::match_start});
    return std::move(program_);
  }

 private:
  // What is done to the ways on top of the stack.
  struct Task {
    enum Kind : std::uint8_t {
      write,        // replace them by the ways to enter the node
      write_many,   // the same, `argument` times
      write_up_to,  // the same, but each time the ways under them may be chosen instead
      pass,         // pass a bracket of a group, whose slot is `argument`
      choose,       // fork to them or to those under them; to these first if the node is lazy
      copy,         // push a copy of the ways that are `argument` under the top
      drop_under,   // forget those under them
      close_loop    // they enter the body of the repeat, which comes back to the instruction `argument`
    };
    Kind kind;
    NodeIndex node;
    std::uint32_t argument;
  };

  // The task that is put off last is carried out first.
  void later(Task::Kind kind, NodeIndex node, std::uint32_t argument = 0) {
    tasks_.push_back({kind, node, argument});
  }

  InstructionIndex add(const Node& node, Instruction instruction) {
    if (program_.instructions.size() == most_instructions) {
      throw RegexError(node.offset, "with its repeats written out the pattern takes more than " +
                                        std::to_string(most_instructions) + " steps");
    }
    program_.instructions.push_back(instruction);
    return static_cast<InstructionIndex>(program_.instructions.size() - 1);
  }

  // The ways that have `depth` others on top.
  InstructionIndex* ways(std::size_t depth = 0) { return ways_.data() + ways_.size() - (depth + 1) * width_; }

  void carry_out(const Task& task) {
    switch (task.kind) {  // uncovered: every kind has its case
      case Task::write:
        return write(task.node);
      case Task::write_many:
        if (task.argument == 0) return;
        later(Task::write_many, task.node, task.argument - 1);
        return write(task.node);
      case Task::write_up_to:
        if (task.argument == 0) return;
        later(Task::write_up_to, task.node, task.argument - 1);
        later(Task::choose, task.node);
        return later(Task::write, tree_.nodes[task.node].first_child);
      case Task::pass:
        if (!program_.plan.has_tag(task.argument)) return;
        return each_way(task.node, Instruction::tag, program_.plan.places[task.argument].tag);
      case Task::choose:
        return choose(tree_.nodes[task.node]);
      case Task::copy:
        for (std::size_t way = 0; way < width_; ++way) {
          ways_.push_back(ways_[ways_.size() - (task.argument + 1) * width_]);
        }
        return;
      case Task::drop_under:
        ways_.erase(ways_.end() - 2 * static_cast<std::ptrdiff_t>(width_),
                    ways_.end() - static_cast<std::ptrdiff_t>(width_));
        return;
      case Task::close_loop:
        return close_loop(task);
    }
  }

  void write(NodeIndex index) {
    const Node& node = tree_.nodes[index];
    switch (node.kind) {  // uncovered: every kind has its case
      case Node::empty:
        return;
      case Node::bytes:
        std::fill_n(ways(), width_, add(node, {Instruction::bytes, ways_.back(), node.number}));
        return;
      case Node::text_start:
        return each_way(index, Instruction::text_start, 0);
      case Node::text_end:
        return each_way(index, Instruction::text_end, 0);
      case Node::group:
        later(Task::pass, index, 2 * node.number);
        later(Task::write, node.first_child);
        return later(Task::pass, index, 2 * node.number + 1);
      case Node::sequence:
        for (NodeIndex item = node.first_child; item != no_node; item = tree_.nodes[item].next_sibling) {
          later(Task::write, item);
        }
        return;
      case Node::alternatives:
        return write_alternatives(index);
      case Node::repeat:
        return write_repeat(index);
    }
  }

  // Where several ways go on alike, they are one.
  void each_way(NodeIndex node, Instruction::Operation operation, std::uint32_t argument) {
    InstructionIndex* entry = ways();
    InstructionIndex next = no_node;
    for (std::size_t way = 0; way < width_; ++way) {
      const bool same = entry[way] == next;  // never the first
      next = entry[way];
      entry[way] = same ? entry[way - 1] : add(tree_.nodes[node], {operation, next, argument});
    }
  }

  void choose(const Node& node) {
    InstructionIndex* entry = ways();
    const InstructionIndex* other = ways(1);
    InstructionIndex preferred = no_node;
    for (std::size_t way = 0; way < width_; ++way) {
      const bool same = entry[way] == preferred && other[way] == other[way - 1];  // never the first
      preferred = entry[way];
      entry[way] = same ? entry[way - 1] : add(node, fork(node.greedy, preferred, other[way]));
    }
  }

  static Instruction fork(bool prefer_first, InstructionIndex first, InstructionIndex second) {
    return prefer_first ? Instruction{Instruction::fork, first, second}
                        : Instruction{Instruction::fork, second, first};
  }

  // The last alternative is written first; each of the others is then preferred to what there is so far. The
  // ways on are under it all until the end.
  void write_alternatives(NodeIndex index) {
    later(Task::drop_under, index);
    for (NodeIndex each = tree_.nodes[index].first_child; each != no_node;
         each = tree_.nodes[each].next_sibling) {
      const bool last = tree_.nodes[each].next_sibling == no_node;
      if (!last) {
        later(Task::drop_under, index);
        later(Task::choose, index);
      }
      later(Task::write, each);
      later(Task::copy, index, last ? 0 : 1);
    }
  }

  void write_repeat(NodeIndex index) {
    const Node& node = tree_.nodes[index];
    if (node.maximum == unbounded) {
      // x{3,} is xxx+, of which the loop is the last part, so it is written first.
      later(Task::write_many, node.first_child, std::max(node.minimum, 1U) - 1);
      return open_loop(index);
    }
    later(Task::write_many, node.first_child, node.minimum);
    if (node.maximum == node.minimum) return;
    // x{0,2} is (x(x)?)?, where every second choice leaves for good.
    later(Task::drop_under, index);
    later(Task::write_up_to, index, node.maximum - node.minimum);
    later(Task::copy, index, 0);
  }

  void open_loop(NodeIndex index) {
    const Node& node = tree_.nodes[index];
    const InstructionIndex again = add(node, {Instruction::fork});
    later(Task::drop_under, index);
    if (node.minimum == 0) later(Task::choose, index);
    later(Task::close_loop, index, again);
    later(Task::write, node.first_child);
    // An iteration that took a byte may be followed by another; one that took none goes on to what follows.
    if (extents_[node.first_child].can_be_empty()) {
      carry_out({Task::copy, index, 0});
      ways_.push_back(again);
      ++width_;
    } else {
      ways_.resize(ways_.size() + width_, again);
    }
  }

  void close_loop(const Task& task) {
    const Node& node = tree_.nodes[task.node];
    if (extents_[node.first_child].can_be_empty()) {
      ways_.pop_back();
      --width_;
    }
    const InstructionIndex body = ways_.back();
    program_.instructions[task.argument] = fork(node.greedy, body, *(ways(1) + width_ - 1));
  }

  SyntaxTree tree_;
  std::vector<Extent> extents_;
  Program program_;
  std::vector<Task> tasks_;
  std::vector<InstructionIndex> ways_;
  std::size_t width_ = 1;
};

}  // namespace

Program compile(SyntaxTree tree) {
  return Compiler(std::move(tree)).compile();
}

}  // namespace regex_detail
