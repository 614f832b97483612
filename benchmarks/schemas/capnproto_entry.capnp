# The fields of entries/plain_entry.h for Cap'n Proto, in the same order.
@0xefeb65cb8873c4e7;

using Cxx = import "/capnp/c++.capnp";
$Cxx.namespace("capnproto_entry");

struct Operator {
  rotation @0 :List(Int32);
  translation @1 :List(Float64);
}

struct Cell {
  a @0 :Float64;
  b @1 :Float64;
  c @2 :Float64;
  alpha @3 :Float64;
  beta @4 :Float64;
  gamma @5 :Float64;
  operators @6 :List(Operator);
}

struct Atom {
  label @0 :Text;
  element @1 :Text;
  x @2 :Float64;
  y @3 :Float64;
  z @4 :Float64;
  occupancy @5 :Float64;
}

struct CrystalMaker {
  cell @0 :Cell;
  atoms @1 :List(Atom);
}

struct Journal {
  name @0 :Text;
  coden @1 :Int32;
  internationalCoden @2 :Text;
}

struct Publication {
  journal @0 :Journal;
  authors @1 :List(Text);
  volume @2 :Text;
  year @3 :Int32;
  page @4 :Text;
}

struct Range {
  lowerCondition @0 :Int32;
  upperCondition @1 :Int32;
  lower @2 :Float64;
  upper @3 :Float64;
}

struct ExperimentalInfo {
  temperature @0 :Float64;
  temperatureText @1 :Text;
  pressure @2 :Text;
  experimentalDensity @3 :Float64;
  calculatedDensity @4 :Float64;
  rFactor @5 :Float64;
  meanCcBondSigma @6 :Range;
  probe @7 :Int32;
  radiationSource @8 :Text;
  absoluteConfiguration @9 :Bool;
  diffractionDetails @10 :Text;
  powder @11 :Int32;
  refinementDetails @12 :Text;
  intensityMethod @13 :Int32;
}

struct Date {
  year @0 :Int32;
  month @1 :Int32;
  day @2 :Int32;
}

struct EditorsInfo {
  accessionDate @0 :Date;
  modificationDate @1 :Date;
  category @2 :Int32;
  bondingTolerance @3 :Float64;
  previousRefcode @4 :Text;
  aserMatchFlag @5 :Int32;
  connectivityComment @6 :Text;
  batch @7 :Int32;
  memo @8 :Text;
  remarks @9 :Text;
  authorCorrespondence @10 :Int32;
  ignoredErrors @11 :Int32;
}

struct ChemicalInfo {
  formula @0 :Text;
  name @1 :Text;
  bioactivity @2 :Text;
  conformer @3 :Text;
  source @4 :Text;
  peptideSequence @5 :Text;
  isomer @6 :Text;
  classifiers @7 :List(Int32);
  synonyms @8 :List(Text);
}

struct CrystalInfo {
  z @0 :Float64;
  zPrime @1 :Float64;
  color @2 :Text;
  habit @3 :Text;
  analogues @4 :Text;
  meltingPoint @5 :Text;
  notes @6 :Text;
  phaseTransitions @7 :Text;
  polymorph @8 :Text;
  sensitivity @9 :Text;
  recrystallisationSolvent @10 :Text;
  disorderDetails @11 :Text;
  otherCellDetails @12 :Text;
}

struct ConnectivityAtom {
  element @0 :Text;
  label @1 :Text;
  charge @2 :Int32;
  hydrogenCount @3 :Int32;
}

struct ConnectivityBond {
  first @0 :Int32;
  second @1 :Int32;
  type @2 :Int32;
}

struct Connectivity {
  atoms @0 :List(ConnectivityAtom);
  bonds @1 :List(ConnectivityBond);
}

struct TypedText {
  type @0 :Int32;
  text @1 :Text;
}

struct Entry {
  identifier @0 :Text;
  crystalMaker @1 :CrystalMaker;
  cell @2 :Cell;
  publication @3 :Publication;
  experimentalInfo @4 :ExperimentalInfo;
  editorsInfo @5 :EditorsInfo;
  chemicalInfo @6 :ChemicalInfo;
  crystalInfo @7 :CrystalInfo;
  connectivity @8 :Connectivity;
  crossReferences @9 :List(TypedText);
  depositions @10 :List(TypedText);
}
