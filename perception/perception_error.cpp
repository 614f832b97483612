#include <perception/perception_error.h>

// Here, so that one library holds the type that is caught.
PerceptionError::~PerceptionError() = default;
