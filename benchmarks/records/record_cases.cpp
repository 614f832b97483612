#include "records/record_cases.h"

#include <benchmark/benchmark.h>
#include <database_entry/entries/crystal_structure_deferred_database_entry.h>
#include <database_entry/records/crystal_info.h>
#include <database_entry/records/journal.h>
#include <database_entry/records/publication.h>
#include <database_entry/references/cross_reference_info.h>
#include <database_entry/references/deposition_info.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace {

// So many operations make one pass, so that what surrounds a pass weighs nothing.
constexpr int operations = 1000;

void measure(Suite& suite, const std::string& case_name, const std::string& subject,
             std::function<void()> operation) {
  operation();  // what is built at the first use is not measured
  suite.measure(case_name, subject, operations, 0, [operation = std::move(operation)] {
    for (int index = 0; index < operations; ++index) operation();
  });
}

// Takes characters and drops them, as fast as a stream can be written to.
class DroppingBuffer : public std::streambuf {
 protected:
  int_type overflow(int_type character) override {
    setp(memory_.data(), memory_.data() + memory_.size());
    return traits_type::not_eof(character);
  }

 private:
  std::array<char, 4096> memory_{};
};

void add_journals(Suite& suite) {
  const std::string building = "Journal(n)";
  measure(suite, building, Suite::own, [] {
    static int coden = 0;
    coden = coden % Journal::max_vorn_coden() + 1;
    benchmark::DoNotOptimize(Journal(coden));
  });
  std::vector<std::array<std::string, 2>> texts;
  for (int coden = 1; coden <= Journal::max_vorn_coden(); ++coden) {
    texts.push_back({Journal(coden).international_coden(), Journal(coden).name()});
  }
  measure(suite, building, "two texts copied from an array", [texts] {
    static std::size_t index = 0;
    index = (index + 1) % texts.size();
    benchmark::DoNotOptimize(std::array<std::string, 2>(texts[index]));
  });

  const std::string asking = "Journal::state(n)";
  measure(suite, asking, Suite::own, [] {
    static int coden = 0;
    coden = coden % Journal::max_vorn_coden() + 1;
    benchmark::DoNotOptimize(Journal::state(coden));
  });
  std::vector<int> states;
  for (int coden = 1; coden <= Journal::max_vorn_coden(); ++coden) states.push_back(Journal::state(coden));
  measure(suite, asking, "one load from an array", [states] {
    static std::size_t index = 0;
    index = (index + 1) % states.size();
    benchmark::DoNotOptimize(states[index]);
  });
}

void add_enumeration_texts(Suite& suite) {
  using Type = DepositionInfo::DepositionType;
  const std::string making = "enumeration texts, a mapping of twelve rows made";
  measure(suite, making, Suite::own,
          [] { benchmark::DoNotOptimize(DepositionInfo::deposition_type_text()); });
  const auto mapping = DepositionInfo::deposition_type_text();
  const std::vector<std::pair<Type, std::string>> rows(mapping->begin(), mapping->end());
  measure(suite, making, "the sorted rows copied", [rows] {
    benchmark::DoNotOptimize(std::make_unique<std::vector<std::pair<Type, std::string>>>(rows));
  });

  const std::string by_value = "enumeration texts, the text of a value";
  measure(suite, by_value, Suite::own,
          [mapping] { benchmark::DoNotOptimize(&mapping->text(DepositionInfo::jds)); });
  std::array<std::string, 12> by_number;
  for (const auto& [value, text] : *mapping) by_number[static_cast<std::size_t>(value)] = text;
  measure(suite, by_value, "one load from an array", [by_number] {
    std::size_t number = DepositionInfo::jds;
    benchmark::DoNotOptimize(number);
    benchmark::DoNotOptimize(&by_number[number]);
  });

  const std::string by_text = "enumeration texts, the value of a text";
  measure(suite, by_text, Suite::own, [mapping] { benchmark::DoNotOptimize(mapping->value("RUSSIAN")); });
  measure(suite, by_text, "comparing with all twelve", [rows] {
    const std::string_view wanted = "RUSSIAN";
    benchmark::DoNotOptimize(
        std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.second == wanted; }));
  });
}

// The summary of the record beside one insertion of the text that it gives.
void add_summary(Suite& suite, const std::string& record, const std::function<void(std::ostream&)>& print,
                 const std::function<void(std::ostream&)>& by_hand) {
  std::ostringstream printed;
  print(printed);
  const std::string text = printed.str();
  const std::string case_name = "summary of " + record + " (" + std::to_string(text.size()) + " characters)";
  const auto buffer = std::make_shared<DroppingBuffer>();
  const auto stream = std::make_shared<std::ostream>(buffer.get());
  measure(suite, case_name, Suite::own, [print, stream, buffer] { print(*stream); });
  std::ostringstream again;
  by_hand(again);
  if (again.str() != text) throw std::logic_error("the summary by hand of " + record + " is another one");
  measure(suite, case_name, "a stream written by hand", [by_hand, stream, buffer] { by_hand(*stream); });
  measure(suite, case_name, "the finished text in one call", [text, stream, buffer] { *stream << text; });
}

void add_summaries(Suite& suite) {
  const Publication publication({"A.B.Smith", "C.Jones"}, Journal(4), "101", 1979, "2345");
  add_summary(
      suite, "a publication", [publication](std::ostream& os) { publication.print(os); },
      [publication](std::ostream& os) {
        for (const std::string& author : publication.authors) os << author << ", ";
        os << publication.journal.name() << ", " << publication.volume << ", " << publication.page << ", "
           << publication.year << std::endl;
      });
  CrystalInfo crystal;
  crystal.z = 4;
  crystal.z_prime = 0.5;
  crystal.color = "colourless";
  crystal.habit = "needle";
  add_summary(
      suite, "a crystal", [crystal](std::ostream& os) { crystal.print(os); },
      [crystal](std::ostream& os) {
        os << "Z: " << crystal.z << ", Z': " << crystal.z_prime << ", color: " << crystal.color
           << ", habit: " << crystal.habit << ", analogues: , melting_point: , notes: , phase_transitions: "
           << ", polymorph: , sensitivity: , recrystallisation_solvent: , disorder_details: "
           << ", other_cell_details: " << std::endl;
      });
}

void add_depositions(Suite& suite) {
  const std::string setting = "set_text, three depositions into a new record";
  measure(suite, setting, Suite::own, [] {
    DepositionInfo info;
    info.set_text(DepositionInfo::russian, "R77");
    info.set_text(DepositionInfo::vorn, " VORN 123456 ");
    info.set_text(DepositionInfo::iucr_coeditor_code, "IUCr AB1234");
    benchmark::DoNotOptimize(&info);
  });
  measure(suite, setting, "three texts appended to a vector", [] {
    std::vector<DepositionInfo::Deposition> list;
    list.emplace_back(DepositionInfo::vorn, "VORN 123456");
    list.emplace_back(DepositionInfo::iucr_coeditor_code, "IUCr AB1234");
    list.emplace_back(DepositionInfo::russian, "R77");
    benchmark::DoNotOptimize(list.data());
  });

  DepositionInfo info;
  info.set_text(DepositionInfo::vorn, "VORN 123456 and VORN 345");
  const std::string finding = "deposition numbers of a text with two";
  auto numbers = std::make_shared<std::vector<std::string>>();
  measure(suite, finding, Suite::own,
          [info, numbers] { info.deposition_numbers(DepositionInfo::vorn, *numbers); });
  measure(suite, finding, "the two numbers appended to a vector", [numbers] {
    numbers->clear();
    numbers->emplace_back("123456");
    numbers->emplace_back("345");
    benchmark::DoNotOptimize(numbers->data());
  });
}

void add_cross_references(Suite& suite) {
  const DatabaseCrossReference reference(DatabaseCrossReference::racemate,
                                         "Racemate of the form studied at 295 K, see [ABCDEF], [GHIJKL01]");
  const std::string finding = "identifiers of a text with two";
  auto found = std::make_shared<std::vector<DatabaseEntryIdentifier>>();
  measure(suite, finding, Suite::own, [reference, found] {
    found->clear();
    reference.identifiers(*found);
  });
  measure(suite, finding, "the two identifiers appended to a vector", [found] {
    found->clear();
    found->emplace_back("ABCDEF");
    found->emplace_back("GHIJKL01");
    benchmark::DoNotOptimize(found->data());
  });
}

// How the cost grows: per reference, deposition and byte, so that the rows of a case would be equal.
void add_growth(Suite& suite) {
  const auto found = std::make_shared<std::vector<DatabaseEntryIdentifier>>();
  const std::string referring = "identifiers of many cross-references, per reference";
  const std::string depositing = "set_text of many depositions into one record, per deposition";
  const std::string searching = "identifiers of a long text, per byte";
  suite.compare_with(referring, "1");
  suite.compare_with(depositing, "1");
  suite.compare_with(searching, "100");
  for (const int count : {1, 10, 100}) {
    CrossReferenceInfo info;
    for (int index = 0; index < count; ++index) {
      info.insert(DatabaseCrossReference(DatabaseCrossReference::isomer,
                                         "Isomer no. " + std::to_string(index),
                                         DatabaseEntryIdentifier("ABCDEF01")));
    }
    const auto items = static_cast<std::size_t>(count);
    suite.measure(referring, std::to_string(count), items, 0, [info, found] {
      found->clear();
      info.cross_related_identifiers(*found);
    });
    suite.measure(depositing, std::to_string(count), items, 0, [count] {
      DepositionInfo record;
      for (int index = 0; index < count; ++index) {
        record.set_text(static_cast<DepositionInfo::DepositionType>(index % 12), "VORN 123456");
      }
      benchmark::DoNotOptimize(&record);
    });
  }
  for (const std::size_t length : {100U, 1'000U, 10'000U, 100'000U}) {
    std::string text = "[ABCDEF]";
    while (text.size() < length) text += " as told by the authors";
    const DatabaseCrossReference reference(DatabaseCrossReference::racemate, text);
    suite.measure(searching, std::to_string(length), text.size(), text.size(), [reference, found] {
      found->clear();
      reference.identifiers(*found);
    });
  }
}

class PublicationSource : public CrystalStructureDatabaseEntryDataSource {
 public:
  [[nodiscard]] THandle<Publication> publication() const override { return publication_; }

 private:
  THandle<Publication> publication_{new Publication};
};

void add_deferred_access(Suite& suite) {
  const std::string case_name = "a cached component of a deferred entry";
  const auto entry = std::make_shared<CrystalStructureDeferredDatabaseEntry>(
      THandle<CrystalStructureDatabaseEntryDataSource>(new PublicationSource));
  measure(suite, case_name, Suite::own, [entry] { benchmark::DoNotOptimize(entry->publication()); });
  const auto handle = std::make_shared<THandle<Publication>>(new Publication);
  measure(suite, case_name, "a handle copied",
          [handle] { benchmark::DoNotOptimize(THandle<Publication>(*handle)); });
}

}  // namespace

void add_record_cases(Suite& suite) {
  add_journals(suite);
  add_enumeration_texts(suite);
  add_summaries(suite);
  add_depositions(suite);
  add_cross_references(suite);
  add_growth(suite);
  add_deferred_access(suite);
}
