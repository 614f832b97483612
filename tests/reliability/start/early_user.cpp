// A program whose static objects use the library before main, and after it: linked with the shared libraries,
// and with the library's objects put behind its own, so that its initialisers run first.
#include <database_entry/database_entry.h>

#include <iostream>

namespace {

// What a catalogue that is built at the start of a program would do.
struct Catalogue {
  Catalogue() {
    DatabaseCrossReference(DatabaseCrossReference::isomer, "of [ABCDEF01] and [X1234567]")
        .identifiers(related);
    DepositionInfo info;
    info.set_text(DepositionInfo::vorn, "VORN 12 and VORN 345");
    info.deposition_numbers(DepositionInfo::vorn, numbers);
    journal = Journal(4).international_coden();
    probe = ExperimentalInfo::radiation_probe_text()->text(ExperimentalInfo::neutron);
  }

  [[nodiscard]] bool is_complete() const {
    return related.size() == 2 && related[0].text() == "ABCDEF01" && related[1].text() == "X1234567" &&
           numbers == std::vector<std::string>{"12", "345"} && journal == "JACSAT" && probe == "neutron";
  }

  std::vector<DatabaseEntryIdentifier> related;
  std::vector<std::string> numbers;
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
