// An entry that notes which of its accessors and setters are called, in order.
#pragma once

#include <string>
#include <vector>

#include "entries/sample_entry.h"

class NotingEntry : public CrystalStructureImmediateDatabaseEntry {
 public:
  using Base = CrystalStructureImmediateDatabaseEntry;
  explicit NotingEntry(const Base& entry = sample_entry()) : Base(entry) {}

  [[nodiscard]] const std::vector<std::string>& notes() const { return notes_; }

  DatabaseEntryIdentifier identifier() const override { return note("identifier"), Base::identifier(); }
  THandle<CrystalMaker> crystal_maker() const override {
    return note("crystal maker"), Base::crystal_maker();
  }
  THandle<Cell> cell() const override { return note("cell"), Base::cell(); }
  THandle<ExperimentalInfo> experimental_info() const override {
    return note("experimental info"), Base::experimental_info();
  }
  THandle<EditorsInfo> editors_info() const override { return note("editors info"), Base::editors_info(); }
  THandle<ChemicalInfo> chemical_info() const override {
    return note("chemical info"), Base::chemical_info();
  }
  THandle<CrystalInfo> crystal_info() const override { return note("crystal info"), Base::crystal_info(); }
  THandle<Publication> publication() const override { return note("publication"), Base::publication(); }
  THandle<ChemicalDiagram> chemical_diagram() const override {
    return note("chemical diagram"), Base::chemical_diagram();
  }
  THandle<ConnectivityInfo> connectivity_info() const override {
    return note("connectivity info"), Base::connectivity_info();
  }
  THandle<CrystalDiagramMatch> crystal_diagram_match() const override {
    return note("crystal diagram match"), Base::crystal_diagram_match();
  }
  THandle<ConnectivityDiagramMatch> connectivity_diagram_match() const override {
    return note("connectivity diagram match"), Base::connectivity_diagram_match();
  }
  THandle<CrystalConnectivityMatch> crystal_connectivity_match() const override {
    return note("crystal connectivity match"), Base::crystal_connectivity_match();
  }
  THandle<CrossReferenceInfo> cross_reference_info() const override {
    return note("cross reference info"), Base::cross_reference_info();
  }
  THandle<DepositionInfo> deposition_info() const override {
    return note("deposition info"), Base::deposition_info();
  }
  THandle<DisorderSelectors> disorder_selector() const override {
    return note("disorder selector"), Base::disorder_selector();
  }
  THandle<PublishedGeometry> published_geometry() const override {
    return note("published geometry"), Base::published_geometry();
  }

  void set_identifier(const DatabaseEntryIdentifier& identifier) override {
    note("set identifier"), Base::set_identifier(identifier);
  }
  void set_experimental_info(THandle<ExperimentalInfo> info) override {
    note("set experimental info"), Base::set_experimental_info(info);
  }
  void set_editors_info(THandle<EditorsInfo> info) override {
    note("set editors info"), Base::set_editors_info(info);
  }
  void set_chemical_info(THandle<ChemicalInfo> info) override {
    note("set chemical info"), Base::set_chemical_info(info);
  }
  void set_crystal_info(THandle<CrystalInfo> info) override {
    note("set crystal info"), Base::set_crystal_info(info);
  }
  void set_publication(THandle<Publication> publication) override {
    note("set publication"), Base::set_publication(publication);
  }
  void set_cross_reference_info(THandle<CrossReferenceInfo> info) override {
    note("set cross reference info"), Base::set_cross_reference_info(info);
  }
  void set_deposition_info(THandle<DepositionInfo> info) override {
    note("set deposition info"), Base::set_deposition_info(info);
  }
  void set_disorder_selector(THandle<DisorderSelectors> selectors) override {
    note("set disorder selector"), Base::set_disorder_selector(selectors);
  }
  void set_published_geometry(THandle<PublishedGeometry> geometry) override {
    note("set published geometry"), Base::set_published_geometry(geometry);
  }

 private:
  void note(const char* name) const { notes_.emplace_back(name); }

  mutable std::vector<std::string> notes_;
};
