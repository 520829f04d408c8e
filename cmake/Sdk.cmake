# What a host outside this tree builds against: the host SDK's libraries and headers, the header of the module's exports, the
# module itself, and the simulated cameras for a host's tests. `cmake --install BUILD --component sdk --prefix DIR`, then
# find_package(kelCameraVimba) with DIR in CMAKE_PREFIX_PATH, or pkg-config.

# What a host links to; the module is loaded at run time, only its header is needed.
add_library(kelCameraVimba-host INTERFACE)
add_library(kelCameraVimba::host ALIAS kelCameraVimba-host)
set_target_properties(kelCameraVimba-host PROPERTIES EXPORT_NAME host)
target_link_libraries(kelCameraVimba-host INTERFACE kel.imagingdevice $<BUILD_INTERFACE:kelCameraVimba-exports>)

# What a host's test links to if it sets up simulated cameras and their faults.
add_library(kelCameraVimba::simulator ALIAS VimbaC)
set_target_properties(VimbaC PROPERTIES EXPORT_NAME simulator)

if(NOT KEL_INSTALL)
  return()
endif()
include(CMakePackageConfigHelpers)

# Everything that runs lies side by side, as in the build folder. On Linux that is a folder of the project's own: these
# libraries are found through their users' run paths, never by the loader's own search.
if(WIN32)
  set(KEL_INSTALL_RUN bin)
  set(kel_library_prefix "")
  set(link_folder lib)
  set(simulator_link_folder lib/kelCameraVimba-simulator)
else()
  set(KEL_INSTALL_RUN lib/kelCameraVimba)
  set(kel_library_prefix lib)
  set(link_folder ${KEL_INSTALL_RUN})
  set(simulator_link_folder ${KEL_INSTALL_RUN}/simulator)
endif()
set(sdk_include include/kelCameraVimba)
set(sdk_cmake lib/cmake/kelCameraVimba)
set(module_file ${KEL_INSTALL_RUN}/${kel_library_prefix}kelCameraVimba${CMAKE_SHARED_LIBRARY_SUFFIX})
set(simulator_folder ${KEL_INSTALL_RUN}/simulator)

install(TARGETS kel.portable.core kel.core kel.tools kel.imagingdevice kelCameraVimba-host EXPORT kelCameraVimba
  RUNTIME DESTINATION ${KEL_INSTALL_RUN} COMPONENT sdk
  LIBRARY DESTINATION ${KEL_INSTALL_RUN} COMPONENT sdk
  ARCHIVE DESTINATION ${link_folder} COMPONENT sdk
  INCLUDES DESTINATION ${sdk_include})
install(TARGETS kelCameraVimba
  RUNTIME DESTINATION ${KEL_INSTALL_RUN} COMPONENT sdk
  LIBRARY DESTINATION ${KEL_INSTALL_RUN} COMPONENT sdk)
install(FILES ${kel_runtime_libraries} DESTINATION ${KEL_INSTALL_RUN} COMPONENT sdk)

# The simulated VimbaC has a folder of its own, which no loader searches by itself: it never stands in for the vendor's. Its
# headers have one, too: who includes the SDK does not get them.
install(TARGETS VimbaC EXPORT kelCameraVimba
  RUNTIME DESTINATION ${simulator_folder} COMPONENT sdk
  LIBRARY DESTINATION ${simulator_folder} COMPONENT sdk
  ARCHIVE DESTINATION ${simulator_link_folder} COMPONENT sdk
  INCLUDES DESTINATION ${sdk_include}/simulator)
install(FILES ${PROJECT_SOURCE_DIR}/simulator/vimba_simulator.h ${PROJECT_SOURCE_DIR}/vimbac/VimbaC.h
  DESTINATION ${sdk_include}/simulator COMPONENT sdk)

# The classes' headers; files with other names are the libraries' own.
file(GLOB sdk_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/host/kel.*/*.h)
list(FILTER sdk_headers INCLUDE REGEX "/(b[a-z0-9]+|dlist|wstring|iprofile|imagingdevice|nboard|kel_[a-z_]+_api)\\.h$")
install(FILES ${sdk_headers} DESTINATION ${sdk_include} COMPONENT sdk)
install(FILES ${PROJECT_SOURCE_DIR}/src/driver/kel_camera_vimba.h DESTINATION ${sdk_include}/driver COMPONENT sdk)

install(EXPORT kelCameraVimba NAMESPACE kelCameraVimba:: FILE kelCameraVimbaTargets.cmake
  DESTINATION ${sdk_cmake} COMPONENT sdk)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/kelCameraVimbaConfig.cmake.in
  ${PROJECT_BINARY_DIR}/kelCameraVimbaConfig.cmake
  INSTALL_DESTINATION ${sdk_cmake} PATH_VARS module_file simulator_folder)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kelCameraVimbaConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kelCameraVimbaConfig.cmake ${PROJECT_BINARY_DIR}/kelCameraVimbaConfigVersion.cmake
  DESTINATION ${sdk_cmake} COMPONENT sdk)

# All that an installation of the SDK alone has to have built.
add_custom_target(kelCameraVimba-sdk DEPENDS
  kel.portable.core kel.core kel.tools kel.imagingdevice kelCameraVimba VimbaC)

# The same for builds without CMake. As CMake's, they give their users the libraries' folders as run path.
if(NOT WIN32)
  set(sdk_run_path " -Wl,-rpath,\${libdir}")
  set(simulator_run_path " -Wl,-rpath,\${libdir}")
endif()
foreach(name kelCameraVimba kelCameraVimba-simulator)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION lib/pkgconfig COMPONENT sdk)
endforeach()
