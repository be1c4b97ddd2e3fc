# What is installed. Component Runtime is all that runs: the libraries, the programs and what makes them part
# of a desktop. Component Development is what an embedding program is built with: headers, the links to the
# libraries, a CMake package and pkg-config files.
include(CMakePackageConfigHelpers)

set(vk_cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Vk_DocQuery")
set(vk_libraries Vk_DocQuery Vk_Records)

# The first fills a new database, so whoever installs the libraries needs it.
set(vk_programs vk_make_office)
if(VK_BUILD_PROGRAM)
  list(APPEND vk_programs vk_docquery_host)
endif()

# A host that asks for the records alone, by its linker or at run time, gets the other library too.
if(VK_RELATIVE_RPATH)
  file(RELATIVE_PATH vk_bin_to_lib "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(${vk_programs} PROPERTIES INSTALL_RPATH "$ORIGIN/${vk_bin_to_lib}")
  set_target_properties(Vk_Records PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()
install(TARGETS ${vk_libraries} EXPORT Vk_DocQueryTargets
  LIBRARY
    DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    COMPONENT Runtime
    NAMELINK_COMPONENT Development
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(TARGETS ${vk_programs} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime)
foreach(page IN ITEMS criteria file-format guide-hosts guide-suppliers office-database)
  install(FILES "${PROJECT_SOURCE_DIR}/docs/${page}.md"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}"
    COMPONENT Runtime)
endforeach()
install(EXPORT Vk_DocQueryTargets
  NAMESPACE Vk_DocQuery::
  DESTINATION "${vk_cmake_dir}"
  COMPONENT Development)
# Sources first, then what the build generates: the export headers.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/" "${PROJECT_SOURCE_DIR}/records/include/"
    "${PROJECT_BINARY_DIR}/include/"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  COMPONENT Development
  FILES_MATCHING PATTERN "*.h")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/Vk_DocQueryConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/Vk_DocQueryConfig.cmake"
  INSTALL_DESTINATION "${vk_cmake_dir}"
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/Vk_DocQueryConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/Vk_DocQueryConfig.cmake"
  "${PROJECT_BINARY_DIR}/Vk_DocQueryConfigVersion.cmake"
  DESTINATION "${vk_cmake_dir}"
  COMPONENT Development)

# Relative to the .pc file, so that the tree may be moved.
file(RELATIVE_PATH vk_pc_prefix
  "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" vk_pc_prefix "${vk_pc_prefix}")
foreach(library IN LISTS vk_libraries)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/${library}.pc.in" "${PROJECT_BINARY_DIR}/${library}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${library}.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT Development)
endforeach()
