# What is installed, and how programs outside this tree find it: find_package and pkg-config.
include(CMakePackageConfigHelpers)
get_property(libraries GLOBAL PROPERTY DATABASE_ENTRY_LIBRARIES)
get_property(companions GLOBAL PROPERTY DATABASE_ENTRY_COMPANIONS)
list(TRANSFORM companions PREPEND "database_entry_" OUTPUT_VARIABLE companion_libraries)

# The installed tree may be moved: everything finds its neighbours from where it is itself.
file(RELATIVE_PATH libraries_from_programs "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
set_target_properties(${libraries} ${companion_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
if(TARGET dbentry)
  set_target_properties(dbentry PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
endif()
install(TARGETS ${libraries} ${companion_libraries} EXPORT database_entry-targets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${DATABASE_ENTRY_INCLUDEDIR})

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/database_entry")
install(EXPORT database_entry-targets NAMESPACE database_entry:: DESTINATION ${package_dir})
configure_package_config_file(cmake/database_entry-config.cmake.in database_entry-config.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(database_entry-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/database_entry-config.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/database_entry-config-version.cmake"
        DESTINATION ${package_dir})

# One pkg-config module for the library and the siblings, whose headers its own headers use. A static library
# must come before those that it uses, so the order is the reverse of the building.
list(REVERSE libraries)
list(REMOVE_ITEM libraries database_entry)
list(PREPEND libraries database_entry)
list(TRANSFORM libraries PREPEND "-l" OUTPUT_VARIABLE pkg_config_libraries)
list(JOIN pkg_config_libraries " " pkg_config_libraries)
file(RELATIVE_PATH prefix_from_pkg_config "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" prefix_from_pkg_config "${prefix_from_pkg_config}")
configure_file(cmake/database_entry.pc.in database_entry.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/database_entry.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# One more for each companion, which asks for the modules of those that it uses.
foreach(companion IN LISTS companions)
  get_target_property(uses database_entry_${companion} ROOM_USES)
  list(FILTER uses INCLUDE REGEX "^database_entry::")
  list(TRANSFORM uses REPLACE "^database_entry::" "database_entry_")
  list(TRANSFORM uses REPLACE "^database_entry_database_entry$" "database_entry")
  list(JOIN uses ", " companion_requires)
  get_target_property(links database_entry_${companion} ROOM_LINKS)
  set(companion_private "")
  foreach(library IN LISTS links)
    string(APPEND companion_private " -l${library}")
  endforeach()
  configure_file(cmake/companion.pc.in database_entry_${companion}.pc @ONLY)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/database_entry_${companion}.pc"
          DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()
