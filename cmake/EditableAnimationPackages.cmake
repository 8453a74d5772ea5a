# `cpack -G DEB` in the build folder: libeditableanimation<version> (the libraries), libeditableanimation-dev (headers,
# CMake package, pkg-config files) and curve-editor.

set(CPACK_PACKAGE_VENDOR "Editable animation")
set(CPACK_PACKAGE_CONTACT "Editable animation developers <editable-animation@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime development)
if(TARGET curve-editor)
  list(APPEND CPACK_COMPONENTS_ALL editor)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON) # Which Qt packages are needed is read from what was built.
# The editor's own libraries are in another package, and no longer where it was built.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/base ${PROJECT_BINARY_DIR}/model ${PROJECT_BINARY_DIR}/commands)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libeditableanimation${EDITABLEANIMATION_SOVERSION})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${PROJECT_DESCRIPTION} (libraries)")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libeditableanimation-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${PROJECT_DESCRIPTION} (headers)")
if(NOT EDITABLEANIMATION_MODEL)
  set(qt_headers "")
elseif(QT_MAJOR EQUAL 5)
  set(qt_headers ", qtbase5-dev")
else()
  set(qt_headers ", qt6-base-dev")
endif()
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION}), libboost-dev${qt_headers}")

set(CPACK_DEBIAN_EDITOR_PACKAGE_NAME curve-editor)
set(CPACK_DEBIAN_EDITOR_PACKAGE_SECTION graphics)
set(CPACK_COMPONENT_EDITOR_DESCRIPTION "Timeline and curve editor for animations")
set(CPACK_DEBIAN_EDITOR_PACKAGE_DEPENDS "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION})")

include(CPack)
