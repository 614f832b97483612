// The measurements of one run, and the table that closes it.
//
//   Suite suite;
//   suite.measure("read from a file", "fread", entries, bytes, [&] { ... });
//   suite.expect("read from a file", {"fread", Goal::at_most_times, 2.0});
//   suite.run(std::cout, 15);
//   suite.print(std::cout);
//
// A case compares several subjects that do the same work. The rounds of all subjects are interleaved at
// random, so that what else the machine does meets all of them alike. The minimum and the median over the
// rounds are kept, in nanoseconds of processor time of this thread per item; ratios are ratios of minima.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

// What the measured subject of a case should reach.
struct Goal {
  enum Kind {
    at_least_times_faster,  // than the other subject
    at_most_times,          // the time of the other subject
    at_most_nanoseconds,    // per item, whatever others take; `subject` is the one it is asked of
  };
  std::string subject;
  Kind kind;
  double value;
  std::string of = {};  // another subject that it is asked of, instead of the one that the case is about
};

class Suite {
 public:
  // Subjects of this name are what all others are compared with.
  static constexpr const char* own = "database_entry";

  // `pass` does the work of `items` items that are `bytes` long together (0: no bytes are counted).
  void measure(const std::string& case_name, const std::string& subject, std::size_t items, std::size_t bytes,
               std::function<void()> pass);

  // The same by the clock, for work that other processes do.
  void measure_elapsed(const std::string& case_name, const std::string& subject, std::size_t items,
                       std::function<void()> pass);

  void expect(const std::string& case_name, Goal goal);
  // Compares the others of this case with `subject` instead of with `own`.
  void compare_with(const std::string& case_name, const std::string& subject);
  // A case whose times are the sums over the cases given so far whose names begin with `prefix`.
  void sum(const std::string& case_name, const std::string& prefix);
  // A figure that is not a time of this run's rounds, for the end of the table.
  void note(const std::string& text);

  // Runs everything with Google Benchmark, whose own flags have been set.
  void run();

  void print(std::ostream& os) const;
  // The same figures, to a file; nothing without a path. Throws std::runtime_error where it cannot be
  // written.
  void write_json(const std::string& path) const;

 private:
  struct Subject {
    std::string name;
    std::size_t items = 0;
    std::size_t bytes = 0;
    std::vector<double> rounds = {};  // nanoseconds per item
    [[nodiscard]] double min() const;
    [[nodiscard]] double median() const;
  };
  struct Case {
    std::string name;
    std::string compared_with = own;
    std::string summed_prefix = {};
    std::vector<Subject> subjects = {};
    std::vector<Goal> goals = {};
  };
  struct Verdict;
  class Collector;

  Case& find(const std::string& case_name);
  void fill_sums();
  static const Subject* subject_of(const Case& each, const std::string& name);
  static Verdict judge(const Goal& goal, double own_time, double other_time);
  static std::vector<Verdict> verdicts_of(const Case& each, const Subject& subject);

  std::vector<Case> cases_;
  std::vector<std::string> notes_;
};
