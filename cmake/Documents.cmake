# What a package holds to read: documents whose links hold there, third-party notices, the manual page and the completions of
# kelcam, and a Debian package's own two files. Built as the target package-documents.
include(${CMAKE_CURRENT_LIST_DIR}/Notices.cmake)

# What of others is inside the binaries, and the Debian package of each, which has its terms.
set(notices
  "CLI11 (command line of kelcam)" libcli11-dev
  "JSON for Modern C++ (kelcam, the simulated cameras)" nlohmann-json3-dev
  "Highway (vector kernels in kel.tools)" libhwy-dev
  "Boost (the server of kelcam view)" libboost1.74-dev
  "stb (pictures in the simulated cameras and in kelcam view)" libstb-dev)
if(MINGW)
  list(APPEND notices
    "zlib (pictures in kelcam)" libz-mingw-w64-dev
    "Runtime libraries of GCC (libstdc++-6.dll, libgcc_s_seh-1.dll)" gcc-mingw-w64-x86-64-posix-runtime
    "Runtime libraries of MinGW-w64 (libwinpthread-1.dll)" mingw-w64-x86-64-dev)
endif()

# A package without its documents is none, and one without the terms of others must not be given away.
find_package(Python3 COMPONENTS Interpreter)
kel_missing_terms(missing ${notices})
if(NOT Python3_FOUND)
  list(APPEND missing "Python 3")
endif()
if(missing)
  list(JOIN missing ", " missing)
  message(STATUS "No packages can be made here without ${missing}")
  set(kel_no_packages ON)
  return()
endif()

set(tools ${PROJECT_SOURCE_DIR}/packaging)
set(made ${PROJECT_BINARY_DIR}/packaging)
set(doc share/doc/kelCameraVimba)
add_custom_target(package-documents ALL)

# kel_made(NAME COMMAND ... DEPENDS ...): runs a tool of packaging/ when what it reads has changed.
function(kel_made name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "COMMAND;DEPENDS")
  file(GLOB programs CONFIGURE_DEPENDS ${tools}/*.py)
  add_custom_command(OUTPUT ${made}/${name}.stamp
    COMMAND ${Python3_EXECUTABLE} -B ${tools}/${arg_COMMAND}
    COMMAND ${CMAKE_COMMAND} -E touch ${made}/${name}.stamp
    DEPENDS ${arg_DEPENDS} ${programs} COMMENT "Making ${name} of the packages" VERBATIM COMMAND_EXPAND_LISTS)
  add_custom_target(package-${name} DEPENDS ${made}/${name}.stamp)
  add_dependencies(package-documents package-${name})
endfunction()

kel_notices(${made}/THIRD-PARTY-NOTICES.txt ${notices})
install(FILES ${made}/THIRD-PARTY-NOTICES.txt DESTINATION ${doc} COMPONENT kelcam)

# The documents. The package's own README takes the place of the sources'.
file(GLOB pages CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/docs/*.md)
set(documents packaging/README.md=README.md CHANGELOG.md=CHANGELOG.md SECURITY.md=SECURITY.md)
foreach(page IN LISTS pages)
  list(APPEND documents ${page}=${page})
endforeach()
set(places --map README.md=${doc}/README.md --map docs/images=${doc}/docs/images
  --map examples=share/kelCameraVimba/examples --map apps/kelcam/profiles=share/kelCameraVimba/profiles
  --map apps/kelcam/kelcam-output.schema.json=share/kelCameraVimba/kelcam-output.schema.json
  --map src/driver/kel_camera_vimba.h=${sdk_include}/driver/kel_camera_vimba.h
  --map simulator/scenarios=share/kelCameraVimba/scenarios
  --map simulator/vimba_simulator.h=${sdk_include}/simulator/vimba_simulator.h
  --map vimbac/VimbaC.h=${sdk_include}/simulator/VimbaC.h)
foreach(header IN LISTS sdk_headers)
  cmake_path(GET header FILENAME name)
  cmake_path(RELATIVE_PATH header BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
  list(APPEND places --map ${header}=${sdk_include}/${name})
endforeach()
set(sources ${documents})
list(TRANSFORM sources REPLACE "=.*" "")
list(TRANSFORM sources PREPEND ${PROJECT_SOURCE_DIR}/)
kel_made(pages
  COMMAND make_documents.py --source ${PROJECT_SOURCE_DIR} --output ${made}/doc --at ${doc} ${places} ${documents}
  DEPENDS ${sources})
install(DIRECTORY ${made}/doc/ DESTINATION ${doc} COMPONENT kelcam)
install(DIRECTORY docs/images DESTINATION ${doc}/docs COMPONENT kelcam)

# An archive has the README at its top, too.
kel_made(top
  COMMAND make_documents.py --source ${PROJECT_SOURCE_DIR} --output ${made}/top --at . ${places} --map docs=${doc}/docs
          --map CHANGELOG.md=${doc}/CHANGELOG.md --map SECURITY.md=${doc}/SECURITY.md packaging/README.md=README.md
  DEPENDS ${tools}/README.md)
configure_file(${CMAKE_CURRENT_LIST_DIR}/PackageKinds.cmake.in ${PROJECT_BINARY_DIR}/PackageKinds.cmake @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/PackageKinds.cmake)

# kelcam prints its help only where it runs; other systems have neither manual pages nor these shells.
if(CMAKE_CROSSCOMPILING OR WIN32)
  return()
endif()
kel_made(help
  COMMAND make_help_pages.py $<TARGET_FILE:kelcam> ${made}/help --version ${PROJECT_VERSION} --also kelcam-simulated
  DEPENDS kelcam)
install(DIRECTORY ${made}/help/man/ DESTINATION share/man/man1 COMPONENT kelcam)
install(DIRECTORY ${made}/help/bash/ DESTINATION share/bash-completion/completions COMPONENT kelcam)
install(DIRECTORY ${made}/help/zsh/ DESTINATION share/zsh/vendor-completions COMPONENT kelcam)

# What Debian's tools look for, under the package's own name.
set(components)
while(notices)
  list(POP_FRONT notices description package)
  list(APPEND components --component "${description}=${KEL_TERMS_FOLDER}/${package}/copyright")
endwhile()
kel_made(debian
  COMMAND make_debian_files.py --package ${kel_debian_name} --version ${PROJECT_VERSION}-${kel_debian_revision}
          --maintainer ${KEL_PACKAGE_CONTACT} --changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md --output ${made}/debian
          --overrides ${tools}/lintian-overrides ${components}
  DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${tools}/lintian-overrides)
