# What an embedding program gets: the libraries, their headers, a CMake package and pkg-config files.
include(CMakePackageConfigHelpers)

set(vk_cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Vk_DocQuery")
set(vk_libraries Vk_DocQuery Vk_Records)

install(TARGETS ${vk_libraries} EXPORT Vk_DocQueryTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" NAMELINK_COMPONENT Development
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
# It fills a new database, so whoever installs the libraries needs it.
set_target_properties(vk_make_office PROPERTIES
  INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
install(TARGETS vk_make_office RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
foreach(page IN ITEMS criteria file-format guide-hosts guide-suppliers office-database)
  install(FILES "${PROJECT_SOURCE_DIR}/docs/${page}.md" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
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
