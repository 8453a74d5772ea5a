# What every target of the project shares: language level, warnings, sanitizers, hidden symbols.

include(GenerateExportHeader)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# ea_configure(<target>): the project's compile rules for one target.
function(ea_configure target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  # Contracted multiply-add would change single-precision results between machines.
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -ffp-contract=off
    $<$<BOOL:${EDITABLEANIMATION_WERROR}>:-Werror>)
  if(EDITABLEANIMATION_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${EDITABLEANIMATION_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${EDITABLEANIMATION_SANITIZE})
  endif()
endfunction()

# ea_library(<floor> <export macro prefix> SOURCES <sources>... HEADERS <headers>...): one floor of the house as
# EditableAnimation::<floor>, and the component <floor> of the installed package. The headers are its interface; others
# are not installed. Its export header is generated as <folder>/Export.h beside them.
function(ea_library floor prefix)
  cmake_parse_arguments(arg "" "" "SOURCES;HEADERS" ${ARGN})
  set(target EditableAnimation${floor})
  string(TOLOWER ${floor} folder)
  add_library(${target} ${arg_SOURCES})
  add_library(EditableAnimation::${floor} ALIAS ${target})
  ea_configure(${target})
  # Nobody replaces the library's functions by others of the same names, so that they may call each other directly.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  generate_export_header(${target}
    BASE_NAME ${prefix}
    EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/include/${folder}/Export.h)
  target_sources(${target} PUBLIC
    FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${arg_HEADERS}
    FILE_SET generated TYPE HEADERS BASE_DIRS ${PROJECT_BINARY_DIR}/include
      FILES ${PROJECT_BINARY_DIR}/include/${folder}/Export.h)
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PUBLIC ${prefix}_STATIC_DEFINE)
  endif()
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${floor}
    POSITION_INDEPENDENT_CODE ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${EDITABLEANIMATION_SOVERSION})
  if(EDITABLEANIMATION_INSTALL)
    ea_install_library(${floor})
  endif()
endfunction()
