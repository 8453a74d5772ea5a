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

# ea_library(<floor> <export macro prefix> <sources>...): one floor of the house as EditableAnimation::<floor>.
# Its export header is generated as <folder>/Export.h beside the floor's own headers.
function(ea_library floor prefix)
  set(target EditableAnimation${floor})
  string(TOLOWER ${floor} folder)
  add_library(${target} ${ARGN})
  add_library(EditableAnimation::${floor} ALIAS ${target})
  ea_configure(${target})
  # Nobody replaces the library's functions by others of the same names, so that they may call each other directly.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  generate_export_header(${target}
    BASE_NAME ${prefix}
    EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/include/${folder}/Export.h)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>)
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PUBLIC ${prefix}_STATIC_DEFINE)
  endif()
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()
