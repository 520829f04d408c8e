# Libraries of others: boost, cli11, highway, nlohmann-json and stb, of which headers are all that is used, and GoogleTest. Each comes
# from its CMake package if there is one, else from where its headers are.

# Where a cross build looks for packages of headers: on the build machine, whose toolchain file names the prefix.
if(CMAKE_CROSSCOMPILING)
  set(kel_anywhere PATHS ${KEL_HEADER_PREFIX} NO_CMAKE_FIND_ROOT_PATH)
else()
  set(kel_anywhere)
endif()

# kel_headers(TARGET HEADER VARIABLE [PACKAGE name IMPORTED target]): an interface library with which HEADER can be included.
# VARIABLE names its folder, if it is to be another one than what is found. Of the package's target it takes the folders: a
# library behind the headers would become one that users have to install.
function(kel_headers target header variable)
  cmake_parse_arguments(PARSE_ARGV 3 arg "" "PACKAGE;IMPORTED" "")
  set(folders)
  if(arg_PACKAGE)
    find_package(${arg_PACKAGE} CONFIG QUIET ${kel_anywhere})
    if(TARGET ${arg_IMPORTED})
      get_target_property(folders ${arg_IMPORTED} INTERFACE_INCLUDE_DIRECTORIES)
    endif()
  endif()
  find_path(${variable} ${header} HINTS ${folders} ${kel_anywhere} PATH_SUFFIXES include
    DOC "The folder in which ${header} is")
  if(NOT ${variable})
    message(FATAL_ERROR
      "${header} is missing. Install its package (script/packages has the names), or name its folder in ${variable}.")
  endif()
  set(folder ${${variable}})
  if(CMAKE_CROSSCOMPILING)
    kel_stage_headers(folder ${target} ${folder} ${header})
  endif()
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${folder})
endfunction()

# kel_stage_headers(RESULT TARGET FOLDER HEADER): a folder with these headers alone. A cross build would otherwise see the
# system headers of the build machine beside them.
function(kel_stage_headers result target folder header)
  set(stage ${PROJECT_BINARY_DIR}/staged/${target})
  cmake_path(GET header PARENT_PATH library)
  file(MAKE_DIRECTORY ${stage})
  file(CREATE_LINK ${folder}/${library} ${stage}/${library} SYMBOLIC)
  set(${result} ${stage} PARENT_SCOPE)
endfunction()

kel_headers(cli11 CLI/CLI.hpp KEL_CLI11_FOLDER PACKAGE CLI11 IMPORTED CLI11::CLI11)
kel_headers(highway hwy/highway.h KEL_HIGHWAY_FOLDER PACKAGE hwy IMPORTED hwy::hwy)
kel_headers(nlohmann-json nlohmann/json.hpp KEL_NLOHMANN_JSON_FOLDER
  PACKAGE nlohmann_json IMPORTED nlohmann_json::nlohmann_json)
kel_headers(stb stb/stb_image.h KEL_STB_FOLDER)
kel_headers(boost boost/beast.hpp KEL_BOOST_FOLDER)

# The one that is linked. Inside kelcam.exe it needs no file next to it.
set(ZLIB_USE_STATIC_LIBS ${MINGW})
find_package(ZLIB REQUIRED)

# Sanitizers and a cross build need a GoogleTest that is built like the rest.
if(KEL_BUILD_TESTS AND NOT TARGET GTest::gmock_main AND NOT KEL_SANITIZE AND NOT CMAKE_CROSSCOMPILING)
  find_package(GTest CONFIG QUIET)
endif()
if(KEL_BUILD_TESTS AND NOT TARGET GTest::gmock_main)
  find_path(KEL_GOOGLETEST_SOURCE googletest/CMakeLists.txt PATH_SUFFIXES src/googletest ${kel_anywhere}
    DOC "The source folder of GoogleTest, for builds that have no package of it")
  if(NOT KEL_GOOGLETEST_SOURCE)
    message(FATAL_ERROR "GoogleTest is missing. Install its package or sources (googletest), or name the source folder in "
      "KEL_GOOGLETEST_SOURCE; KEL_BUILD_TESTS=OFF builds without tests.")
  endif()
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
  add_subdirectory(${KEL_GOOGLETEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  foreach(library gtest gmock gmock_main)
    target_compile_options(${library} PRIVATE -w)  # its warnings are not ours to mend
  endforeach()
endif()
