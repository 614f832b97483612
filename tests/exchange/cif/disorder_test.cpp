#include <exchange/cif_reader.h>
#include <gtest/gtest.h>

#include <string>

namespace {

const std::string head =
    "data_I\n_cell_length_a 9\n_cell_length_b 9\n_cell_length_c "
    "9\nloop_\n_atom_site_label\n_atom_site_fract_x\n"
    "_atom_site_fract_y\n_atom_site_fract_z\n";

TEST(ImportedDisorder, HasEachAlternativeWithItsAtoms) {
  const std::string cif =
      head +
      "_atom_site_disorder_assembly\n_atom_site_disorder_group\nC1 0 0 0 . .\nO1 0.5 0 0 A 1\n"
      "O2 0.6 0 0 A 2\nH1 ? 0 0 A 2\nH2 0.7 0 0 A 1\nN1 0.8 0 0 . -1\n";
  const auto entry = read_cif(cif).front().entry;
  const auto& atoms = entry->crystal_maker()->atoms();
  const DisorderSelectors& selectors = *entry->disorder_selector();
  ASSERT_EQ(selectors.size(), 3U);
  EXPECT_EQ(selectors[0]->assembly, "A");
  EXPECT_EQ(selectors[0]->group, "1");
  EXPECT_EQ(selectors[0]->atoms, (std::vector{atoms[1], atoms[3]}));
  EXPECT_EQ(selectors[1]->atoms, (std::vector{atoms[2]}));
  EXPECT_EQ(selectors[2]->group, "-1");
}

TEST(ImportedDisorder, IsNullWhereAllIsOrdered) {
  const std::string cif = head + "C1 0 0 0\n";
  EXPECT_TRUE(read_cif(cif).front().entry->disorder_selector().is_null());
}

}  // namespace
