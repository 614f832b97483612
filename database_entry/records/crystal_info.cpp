#include <database_entry/foundations/field_text.h>
#include <database_entry/records/crystal_info.h>
#include <utilities/archiving/field_list.h>

#include <ostream>

CrystalInfo::CrystalInfo(double the_z, double the_z_prime, const std::string& the_color,
                         const std::string& the_habit, const std::string& the_analogues,
                         const std::string& the_melting_point, const std::string& the_notes,
                         const std::string& the_phase_transitions, const std::string& the_polymorph,
                         const std::string& the_sensitivity, const std::string& the_recrystallisation_solvent,
                         const std::string& the_disorder_details, const std::string& the_other_cell_details)
    : z(the_z),
      z_prime(the_z_prime),
      color(the_color),
      habit(the_habit),
      analogues(the_analogues),
      melting_point(the_melting_point),
      notes(the_notes),
      phase_transitions(the_phase_transitions),
      polymorph(the_polymorph),
      sensitivity(the_sensitivity),
      recrystallisation_solvent(the_recrystallisation_solvent),
      disorder_details(the_disorder_details),
      other_cell_details(the_other_cell_details) {}

void CrystalInfo::write(Archive& archive) const {
  write_all_fields(archive, *this);
}

void CrystalInfo::read(Archive& archive) {
  read_all_fields(archive, *this);
}

void CrystalInfo::print(std::ostream& os) const {
  print_fields(os, *this);
  os << std::endl;
}

bool CrystalInfo::operator==(const CrystalInfo& other) const {
  return equal_fields(*this, other);
}
