# Libraries taken from Debian packages. Header-only ones are staged under the build folder, each alone, so that the Windows
# cross-build sees them without seeing the build machine's own system headers.
function(kel_stage_headers target)
  if(CMAKE_HOST_WIN32)
    # There they come from a package manager whose prefix stands in CMAKE_PREFIX_PATH.
    list(GET ARGN 0 header)
    find_path(${target}_folder ${header} REQUIRED)
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${${target}_folder})
    return()
  endif()
  set(stage ${CMAKE_BINARY_DIR}/staged/${target})
  foreach(header IN LISTS ARGN)
    if(NOT EXISTS /usr/include/${header})
      message(FATAL_ERROR "${target}: /usr/include/${header} is missing; the script/ commands install what the build needs")
    endif()
    get_filename_component(folder ${stage}/${header} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK /usr/include/${header} ${stage}/${header} SYMBOLIC)
  endforeach()
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${stage})
endfunction()

kel_stage_headers(cli11 CLI)
kel_stage_headers(highway hwy)
kel_stage_headers(nlohmann-json nlohmann)
kel_stage_headers(stb stb)

# The one library among them. Inside kelcam.exe it needs no file next to it.
set(ZLIB_USE_STATIC_LIBS ${MINGW})
find_package(ZLIB REQUIRED)

if(KEL_BUILD_TESTS AND CMAKE_HOST_WIN32)
  find_package(GTest CONFIG REQUIRED)
elseif(KEL_BUILD_TESTS)
  # Built from Debian's packaged source: the sanitizer and Windows builds need their own.
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  foreach(library gtest gmock gmock_main)
    target_compile_options(${library} PRIVATE -w)  # its warnings are not ours to mend
  endforeach()
endif()
