# What is installed, and how programs outside this tree find it: find_package and pkg-config.
include(CMakePackageConfigHelpers)
get_property(libraries GLOBAL PROPERTY DATABASE_ENTRY_LIBRARIES)
install(TARGETS ${libraries} EXPORT database_entry-targets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${DATABASE_ENTRY_INCLUDEDIR})
