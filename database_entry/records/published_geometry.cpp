#include <database_entry/records/published_geometry.h>

PublishedGeometry::PublishedGeometry(THandle<std::vector<THandle<PublishedBond>>> the_bonds, bool the_flag)
    : bonds(the_bonds), flag(the_flag) {}
