# The files library alone, for programs that save files without a database.
add_library(Vk_FilesLibrary_objects OBJECT "${CMAKE_CURRENT_LIST_DIR}/FilesLibrary.cpp")
target_include_directories(Vk_FilesLibrary_objects PUBLIC
  "${CMAKE_CURRENT_LIST_DIR}"
  "${PROJECT_SOURCE_DIR}/include"
  "${PROJECT_BINARY_DIR}/include")
target_link_libraries(Vk_FilesLibrary_objects PUBLIC Qt6::Core PRIVATE vk_project_options)
