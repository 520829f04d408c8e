# Packages: everything that a user gets, in one folder: the SDK with the module, kelcam, the simulated cameras, profiles, the
# example and the documents. script/package makes them.
set(kel_debian_name kelcameravimba)
set(kel_debian_revision 1)
set(KEL_PACKAGE_CONTACT "kelCameraVimba developers <developers@kelcameravimba.invalid>" CACHE STRING
  "Who answers for the packages: a name and an address")

# What Windows shows of a file beside its name and version.
set_target_properties(kelCameraVimba PROPERTIES KEL_DESCRIPTION "${PROJECT_DESCRIPTION}")
set_target_properties(kelcam PROPERTIES KEL_DESCRIPTION "Cameras from the command line")
set_target_properties(VimbaC PROPERTIES KEL_DESCRIPTION "Simulated cameras behind the Vimba C API")
set_target_properties(kel.portable.core PROPERTIES KEL_DESCRIPTION "Host SDK: objects, texts, errors")
set_target_properties(kel.core PROPERTIES KEL_DESCRIPTION "Host SDK: profiles")
set_target_properties(kel.tools PROPERTIES KEL_DESCRIPTION "Host SDK: images and conversions")
set_target_properties(kel.imagingdevice PROPERTIES KEL_DESCRIPTION "Host SDK: imaging devices and host output")

install(TARGETS kelcam RUNTIME DESTINATION ${KEL_INSTALL_RUN} COMPONENT kelcam)
if(TARGET VimbaC-aravis)
  install(TARGETS VimbaC-aravis LIBRARY DESTINATION ${KEL_INSTALL_RUN}/aravis COMPONENT kelcam)
endif()
if(WIN32)
  install(PROGRAMS packaging/kelcam-simulated.cmd DESTINATION bin COMPONENT kelcam)
else()
  install(PROGRAMS packaging/kelcam-simulated.sh DESTINATION bin COMPONENT kelcam RENAME kelcam-simulated)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/packaging)
  file(CREATE_LINK ../${KEL_INSTALL_RUN}/kelcam ${PROJECT_BINARY_DIR}/packaging/kelcam SYMBOLIC)
  install(FILES ${PROJECT_BINARY_DIR}/packaging/kelcam DESTINATION bin COMPONENT kelcam)
endif()

set(share share/kelCameraVimba)
install(DIRECTORY apps/kelcam/profiles DESTINATION ${share} COMPONENT kelcam)
install(DIRECTORY simulator/scenarios DESTINATION ${share} COMPONENT kelcam)
install(FILES simulator/scenario.schema.json apps/kelcam/kelcam-output.schema.json DESTINATION ${share} COMPONENT kelcam)
install(DIRECTORY examples/embedding examples/focus examples/testing DESTINATION ${share}/examples COMPONENT kelcam)

include(${CMAKE_CURRENT_LIST_DIR}/Documents.cmake)

# A project that this one is a part of makes its own packages.
if(NOT PROJECT_IS_TOP_LEVEL OR kel_no_packages)
  return()
endif()
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(system windows)
else()
  set(CPACK_GENERATOR TGZ DEB)
  set(system linux)
endif()
set(CPACK_PACKAGE_NAME kelCameraVimba)
set(CPACK_PACKAGE_VENDOR kelCameraVimba)
set(CPACK_PACKAGE_CONTACT ${KEL_PACKAGE_CONTACT})
set(CPACK_PACKAGE_FILE_NAME kelCameraVimba-${PROJECT_VERSION}-${system}-x64)
set(CPACK_MONOLITHIC_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_DEBIAN_PACKAGE_NAME ${kel_debian_name})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${kel_debian_revision})
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
  "The module for hosts, the SDK that it is written against, kelcam to use cameras
 from the command line, and simulated cameras to try all of it without one.")
# The package's own libraries are no other package's; everything else is looked up.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
include(CPack)
