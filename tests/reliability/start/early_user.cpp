// A program whose static objects use the library before main, and after it: linked with the shared libraries,
// and with the library's objects put after its own, so that its initialisers run first.
#include <database_entry/database_entry.h>

#include <iostream>

namespace {

// By kind. A plain array: it is there before any object.
constexpr const char* all_numbers =
    "12 ; 34 ; ; IUC5 ; Six ; 7/8 ; R9 ; 12 34 5 7 8 9 10A ; 12 34 5 7 8 9 10 ; 12 34 5 7 8 9 10 ; "
    "12 34 5 7 8 9 10 ; ABCDEF01 ; ";

// What a catalogue that is built at the start of a program would do.
struct Catalogue {
  Catalogue() {
    DatabaseCrossReference(DatabaseCrossReference::isomer, "of [ABCDEF01] and [X1234567]")
        .identifiers(related);
    // The same text for each kind: each expression finds something else in it.
    for (int kind = 0; kind < 12; ++kind) {
      const auto type = static_cast<DepositionInfo::DepositionType>(kind);
      DepositionInfo info;
      info.set_text(type, kind == 11 ? "ABCDEF01" : "VORN 12, MRV 34, IUC5, IUCr Six, 7/8, R9, 10A");
      std::vector<std::string> found;
      info.deposition_numbers(type, found);
      for (const std::string& number : found) numbers += number + " ";
      numbers += "; ";
    }
    journal = Journal(4).international_coden();
    probe = ExperimentalInfo::radiation_probe_text()->text(ExperimentalInfo::neutron);
  }

  [[nodiscard]] bool is_complete() const {
    return related.size() == 2 && related[0].text() == "ABCDEF01" && related[1].text() == "X1234567" &&
           numbers == all_numbers && journal == "JACSAT" && probe == "neutron";
  }

  std::vector<DatabaseEntryIdentifier> related;
  std::string numbers;
  std::string journal;
  std::string probe;
};

const Catalogue before_main;

// Goes after main, and after every object of the library that was made later than this one.
struct AtExit {
  AtExit() = default;
  ~AtExit() {
    if (!Catalogue().is_complete()) std::_Exit(1);
  }
};
const AtExit at_exit;

}  // namespace

int main() {
  if (before_main.is_complete()) return 0;
  std::cerr << "what was found before main is not complete\n";
  return 1;
}
