#include "report/suite.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace {

std::string fixed(double value, int digits) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(digits) << value;
  return text.str();
}

// Nanoseconds in three or four digits with the unit that a reader would choose.
std::string duration(double nanoseconds) {
  if (nanoseconds < 100) return fixed(nanoseconds, 1) + " ns";
  if (nanoseconds < 10'000) return fixed(nanoseconds, 0) + " ns";
  if (nanoseconds < 10'000'000) return fixed(nanoseconds / 1e3, 1) + " us";
  return fixed(nanoseconds / 1e6, 1) + " ms";
}

// Between the case and the subject in the name of a benchmark.
const std::string separator = " | ";

benchmark::internal::Benchmark* add_benchmark(const std::string& name, std::size_t items, std::size_t bytes,
                                              std::function<void()> pass) {
  return benchmark::RegisterBenchmark(name.c_str(),
                                      [items, bytes, pass = std::move(pass)](benchmark::State& state) {
                                        for ([[maybe_unused]] auto round : state) pass();
                                        const auto passes = static_cast<std::size_t>(state.iterations());
                                        state.SetItemsProcessed(static_cast<std::int64_t>(passes * items));
                                        if (bytes != 0)
                                          state.SetBytesProcessed(static_cast<std::int64_t>(passes * bytes));
                                      });
}

constexpr int subject_width = 44;
constexpr int number_width = 11;

}  // namespace

// What became of a goal: the figure reached, the figure asked for, and whether that is enough.
struct Suite::Verdict {
  double reached;
  double asked;
  bool met;
  std::string asked_text;

  [[nodiscard]] std::string text() const {
    if (met) return asked_text + ": met";
    return asked_text + ": MISSED by " + fixed(std::abs(reached - asked) / asked * 100, 0) + " %";
  }
};

Suite::Verdict Suite::judge(const Goal& goal, double own_time, double other_time) {
  const std::string of = goal.of.empty() ? "" : goal.of + ": ";
  switch (goal.kind) {
    case Goal::at_least_times_faster: {
      const double ratio = other_time / own_time;
      return {ratio, goal.value, ratio >= goal.value, of + "at least " + fixed(goal.value, 2)};
    }
    case Goal::at_most_times: {
      const double ratio = own_time / other_time;
      return {ratio, goal.value, ratio <= goal.value, of + "at most " + fixed(goal.value, 2) + " of it"};
    }
    case Goal::at_most_nanoseconds:
      break;
  }
  return {other_time, goal.value, other_time <= goal.value, "at most " + duration(goal.value)};
}

double Suite::Subject::min() const {
  return *std::min_element(rounds.begin(), rounds.end());
}

double Suite::Subject::median() const {
  std::vector<double> sorted = rounds;
  std::sort(sorted.begin(), sorted.end());
  const std::size_t middle = sorted.size() / 2;
  return sorted.size() % 2 == 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

Suite::Case& Suite::find(const std::string& case_name) {
  const auto found =
      std::find_if(cases_.begin(), cases_.end(), [&](const Case& each) { return each.name == case_name; });
  if (found != cases_.end()) return *found;
  cases_.push_back({case_name});
  return cases_.back();
}

const Suite::Subject* Suite::subject_of(const Case& each, const std::string& name) {
  const auto found = std::find_if(each.subjects.begin(), each.subjects.end(), [&](const Subject& subject) {
    return subject.name == name && !subject.rounds.empty();
  });
  return found == each.subjects.end() ? nullptr : &*found;
}

void Suite::measure(const std::string& case_name, const std::string& subject, std::size_t items,
                    std::size_t bytes, std::function<void()> pass) {
  find(case_name).subjects.push_back({subject, items, bytes});
  add_benchmark(case_name + separator + subject, items, bytes, std::move(pass));
}

void Suite::measure_elapsed(const std::string& case_name, const std::string& subject, std::size_t items,
                            std::function<void()> pass) {
  find(case_name).subjects.push_back({subject, items});
  add_benchmark(case_name + separator + subject, items, 0, std::move(pass))->UseRealTime();
}

void Suite::expect(const std::string& case_name, Goal goal) {
  find(case_name).goals.push_back(std::move(goal));
}

void Suite::compare_with(const std::string& case_name, const std::string& subject) {
  find(case_name).compared_with = subject;
}

void Suite::sum(const std::string& case_name, const std::string& prefix) {
  find(case_name).summed_prefix = prefix;
}

void Suite::note(const std::string& text) {
  notes_.push_back(text);
}

// Takes the rounds as Google Benchmark reports them, when all rounds of a benchmark are done.
class Suite::Collector : public benchmark::BenchmarkReporter {
 public:
  explicit Collector(Suite& suite) : suite_(suite) {}

  bool ReportContext(const Context& context) override {
    PrintBasicContext(&GetErrorStream(), context);
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      const std::string& name = run.run_name.function_name;
      const std::size_t bar = name.rfind(separator);
      for (Subject& subject : suite_.find(name.substr(0, bar)).subjects) {
        if (subject.name == name.substr(bar + separator.size())) {
          subject.rounds.push_back(1e9 / run.counters.at("items_per_second").value);
        }
      }
    }
  }

 private:
  Suite& suite_;
};

void Suite::run() {
  Collector collector(*this);
  benchmark::RunSpecifiedBenchmarks(&collector);
  fill_sums();
}

// The k-th best round of the sum is the sum of the k-th best rounds.
void Suite::fill_sums() {
  for (Case& total : cases_) {
    if (total.summed_prefix.empty()) continue;
    for (const Case& part : cases_) {
      if (&part == &total || part.name.rfind(total.summed_prefix, 0) != 0) continue;
      for (const Subject& subject : part.subjects) {
        std::vector<double> rounds = subject.rounds;
        std::sort(rounds.begin(), rounds.end());
        auto into = std::find_if(total.subjects.begin(), total.subjects.end(),
                                 [&](const Subject& each) { return each.name == subject.name; });
        if (into == total.subjects.end()) {
          total.subjects.push_back({subject.name, 1, 0, std::vector<double>(rounds.size(), 0.0)});
          into = std::prev(total.subjects.end());
        }
        for (std::size_t round = 0; round < rounds.size(); ++round) into->rounds[round] += rounds[round];
      }
    }
  }
}

std::vector<Suite::Verdict> Suite::verdicts_of(const Case& each, const Subject& subject) {
  std::vector<Verdict> verdicts;
  for (const Goal& goal : each.goals) {
    const Subject* asked = subject_of(each, goal.of.empty() ? each.compared_with : goal.of);
    if (goal.subject == subject.name && asked != nullptr) {
      verdicts.push_back(judge(goal, asked->min(), subject.min()));
    }
  }
  return verdicts;
}

void Suite::print(std::ostream& os) const {
  for (const Case& each : cases_) {
    const Subject* measured = subject_of(each, each.compared_with);
    if (std::none_of(each.subjects.begin(), each.subjects.end(),
                     [](const Subject& subject) { return !subject.rounds.empty(); })) {
      continue;
    }
    os << '\n' << each.name << '\n';
    os << "  " << std::left << std::setw(subject_width) << "" << std::right << std::setw(number_width)
       << "min" << std::setw(number_width) << "median" << std::setw(number_width) << "MB/s"
       << std::setw(number_width) << "ratio"
       << "  goal\n";
    for (const Subject& subject : each.subjects) {
      if (subject.rounds.empty()) continue;
      const double bytes_per_item = static_cast<double>(subject.bytes) / static_cast<double>(subject.items);
      os << "  " << std::left << std::setw(subject_width) << subject.name << std::right
         << std::setw(number_width) << duration(subject.min()) << std::setw(number_width)
         << duration(subject.median()) << std::setw(number_width)
         << (subject.bytes == 0 ? "" : fixed(bytes_per_item * 1e3 / subject.min(), 0));
      if (measured != nullptr) os << std::setw(number_width) << fixed(subject.min() / measured->min(), 2);
      std::string gap = "  ";
      for (const Verdict& verdict : verdicts_of(each, subject)) {
        os << gap << verdict.text();
        gap = "; ";
      }
      os << '\n';
    }
  }
  if (!notes_.empty()) os << '\n';
  for (const std::string& note : notes_) os << note << '\n';
}

void Suite::write_json(const std::string& path) const {
  if (path.empty()) return;
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  for (const Case& each : cases_) {
    const Subject* measured = subject_of(each, each.compared_with);
    nlohmann::ordered_json subjects = nlohmann::ordered_json::array();
    for (const Subject& subject : each.subjects) {
      if (subject.rounds.empty()) continue;
      nlohmann::ordered_json row = {{"subject", subject.name},
                                    {"min_ns", subject.min()},
                                    {"median_ns", subject.median()},
                                    {"rounds", subject.rounds.size()}};
      if (measured != nullptr) row["ratio"] = subject.min() / measured->min();
      for (const Verdict& verdict : verdicts_of(each, subject)) {
        row["goals"].push_back(
            {{"asked", verdict.asked_text}, {"reached", verdict.reached}, {"met", verdict.met}});
      }
      subjects.push_back(row);
    }
    if (!subjects.empty()) {
      document.push_back(
          {{"case", each.name}, {"compared_with", each.compared_with}, {"subjects", subjects}});
    }
  }
  std::ofstream file(path);
  file << nlohmann::ordered_json({{"cases", document}, {"notes", notes_}}).dump(2) << '\n';
  if (!file.flush()) throw std::runtime_error(path + " cannot be written");
}
