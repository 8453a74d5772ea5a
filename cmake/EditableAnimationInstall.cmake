# What `cmake --install` leaves: the libraries, the headers of their interface, a CMake package with one component for
# each floor, pkg-config files. `cpack -G DEB` makes packages of the parts runtime, development and editor.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(EDITABLEANIMATION_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/EditableAnimation)
file(RELATIVE_PATH EDITABLEANIMATION_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /) # Holds wherever the tree stands.
set(EDITABLEANIMATION_HEADERS_DIR ${CMAKE_INSTALL_INCLUDEDIR}/EditableAnimation)

# ea_install_library(<floor>): the library, its headers and its targets file, by which the package finds it.
function(ea_install_library floor)
  set(target EditableAnimation${floor})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN") # The tree may be moved.
  install(TARGETS ${target} EXPORT ${target}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    FILE_SET HEADERS DESTINATION ${EDITABLEANIMATION_HEADERS_DIR} COMPONENT development
    FILE_SET generated DESTINATION ${EDITABLEANIMATION_HEADERS_DIR} COMPONENT development)
  install(EXPORT ${target}
    NAMESPACE EditableAnimation::
    FILE ${target}Targets.cmake
    DESTINATION ${EDITABLEANIMATION_CMAKE_DIR}
    COMPONENT development)
endfunction()

# ea_install_pkgconfig(<floor> [REQUIRES <packages>] [CFLAGS <flags>])
function(ea_install_pkgconfig floor)
  cmake_parse_arguments(arg "" "REQUIRES;CFLAGS" "" ${ARGN})
  string(TOLOWER ${floor} name)
  set(EA_FLOOR ${floor})
  set(EA_REQUIRES "${arg_REQUIRES}")
  set(EA_CFLAGS "${arg_CFLAGS}")
  configure_file(${PROJECT_SOURCE_DIR}/packaging/editableanimation.pc.in
    ${PROJECT_BINARY_DIR}/editableanimation-${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/editableanimation-${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

# ea_install_package(): the package itself, when all libraries are known.
function(ea_install_package)
  configure_package_config_file(${PROJECT_SOURCE_DIR}/packaging/EditableAnimationConfig.cmake.in
    ${PROJECT_BINARY_DIR}/EditableAnimationConfig.cmake
    INSTALL_DESTINATION ${EDITABLEANIMATION_CMAKE_DIR}
    NO_SET_AND_CHECK_MACRO)
  # Before 1.0.0 a minor version may break what was built against the one before, see EDITABLEANIMATION_SOVERSION.
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/EditableAnimationConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
  install(FILES
    ${PROJECT_BINARY_DIR}/EditableAnimationConfig.cmake
    ${PROJECT_BINARY_DIR}/EditableAnimationConfigVersion.cmake
    DESTINATION ${EDITABLEANIMATION_CMAKE_DIR} COMPONENT development)

  set(static_cflags "")
  if(NOT BUILD_SHARED_LIBS)
    set(static_cflags "-DVQ_STATIC_DEFINE -DZT_MODEL_STATIC_DEFINE -DZT_COMMANDS_STATIC_DEFINE")
  endif()
  ea_install_pkgconfig(Base CFLAGS "${static_cflags}")
  if(EDITABLEANIMATION_MODEL)
    # Qt wants position-independent code of its users, and its own files do not say so.
    ea_install_pkgconfig(Model REQUIRES "editableanimation-base = ${PROJECT_VERSION}, Qt${QT_MAJOR}Core" CFLAGS "-fPIC")
    ea_install_pkgconfig(Commands
      REQUIRES "editableanimation-model = ${PROJECT_VERSION}, Qt${QT_MAJOR}${EDITABLEANIMATION_UNDO_MODULE}")
  endif()
endfunction()
