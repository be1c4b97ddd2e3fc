# Standard, warnings, hardening and sanitizers of every target of the project stand here once.
# The presets switch both on. Whoever packages the project has flags and compilers of his own.
option(VK_WARNINGS_AS_ERRORS "Stop at a warning" OFF)
option(VK_FORTIFY "Define _FORTIFY_SOURCE in optimised builds" OFF)
add_library(vk_project_options INTERFACE)
target_compile_features(vk_project_options INTERFACE cxx_std_20)
target_compile_options(vk_project_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Wcast-align -Wformat=2
  -Wimplicit-fallthrough -Wunused $<$<BOOL:${VK_WARNINGS_AS_ERRORS}>:-Werror>
  -fstack-protector-strong
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond;-Wduplicated-branches;-Wlogical-op;-fstack-clash-protection>)
target_compile_definitions(vk_project_options INTERFACE
  _GLIBCXX_ASSERTIONS
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
  QT_DISABLE_DEPRECATED_BEFORE=0x060400
  $<$<AND:$<BOOL:${VK_FORTIFY}>,$<NOT:$<CONFIG:Debug>>>:_FORTIFY_SOURCE=2>)
target_link_options(vk_project_options INTERFACE
  -Wl,-z,relro,-z,now -Wl,--as-needed -Wl,--no-undefined)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# What nearly every unit reads is compiled once for each of the two libraries and once for the tests, which
# halves the time of a unit. Units still include what they use: the clang preset builds without this.
set(VK_COMMON_HEADERS
  <algorithm> <functional> <memory> <optional> <vector>
  <QDate> <QHash> <QList> <QObject> <QString> <QStringList> <QVariant>)

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

option(VK_SANITIZE "Address and undefined-behaviour sanitizers" OFF)
if(VK_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

option(VK_CLANG_TIDY "Run clang-tidy on every source" OFF)
if(VK_CLANG_TIDY)
  find_program(VK_CLANG_TIDY_PROGRAM NAMES clang-tidy-14 clang-tidy REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY "${VK_CLANG_TIDY_PROGRAM};--quiet")
  # Generated sources are not ours to mend; the program refuses a configuration without any check.
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/.clang-tidy"
    CONTENT "Checks: '-*,modernize-use-nullptr'\n")
endif()
