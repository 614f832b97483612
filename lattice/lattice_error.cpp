#include <lattice/lattice_error.h>

// Here, so that one library holds the type that is caught.
LatticeError::~LatticeError() = default;
