// The crystal as a specimen, and the contents of its unit cell in words.
//
//   CrystalInfo crystal;
//   crystal.z = 4;                 // formula units in the unit cell
//   crystal.z_prime = 0.5;         // formula units in the asymmetric unit
//
// Units: none; the melting point is free text. 0.0 means "not known". Nothing is checked.
// Numbers are compared exactly: a record that holds a NaN is unequal to its own copy.
// Fails: read() throws ArchiveError where the stream ends; fields read before it keep their new values.
// Threads: as every record, one at a time.
#pragma once

#include <database_entry/export.h>
#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>
#include <utilities/fields.h>

#include <string>
#include <tuple>

class DATABASE_ENTRY_EXPORT CrystalInfo {
 public:
  CrystalInfo() = default;
  CrystalInfo(double z, double z_prime, const std::string& color, const std::string& habit,
              const std::string& analogues, const std::string& melting_point, const std::string& notes,
              const std::string& phase_transitions, const std::string& polymorph,
              const std::string& sensitivity, const std::string& recrystallisation_solvent,
              const std::string& disorder_details, const std::string& other_cell_details);

  void write(Archive& archive) const;
  void read(Archive& archive);
  // One line of labels and values, with its line end; numbers as the stream formats them.
  void print(std::ostream& os) const;

  bool operator==(const CrystalInfo& other) const;

  double z = 0.0;
  double z_prime = 0.0;
  std::string color;
  std::string habit;
  std::string analogues;
  std::string melting_point;
  std::string notes;
  std::string phase_transitions;
  std::string polymorph;
  std::string sensitivity;
  std::string recrystallisation_solvent;
  std::string disorder_details;
  std::string other_cell_details;

  // In archive order, which is the order of comparison and of the summary too.
  static constexpr auto fields() {
    return std::tuple{Field{"z", &CrystalInfo::z, "Z"},
                      Field{"z_prime", &CrystalInfo::z_prime, "Z'"},
                      Field{"color", &CrystalInfo::color},
                      Field{"habit", &CrystalInfo::habit},
                      Field{"analogues", &CrystalInfo::analogues},
                      Field{"melting_point", &CrystalInfo::melting_point},
                      Field{"notes", &CrystalInfo::notes},
                      Field{"phase_transitions", &CrystalInfo::phase_transitions},
                      Field{"polymorph", &CrystalInfo::polymorph},
                      Field{"sensitivity", &CrystalInfo::sensitivity},
                      Field{"recrystallisation_solvent", &CrystalInfo::recrystallisation_solvent},
                      Field{"disorder_details", &CrystalInfo::disorder_details},
                      Field{"other_cell_details", &CrystalInfo::other_cell_details}};
  }
};

template <>
inline constexpr bool is_archived_component<CrystalInfo> = true;
template <>
inline constexpr bool is_printed_component<CrystalInfo> = true;
