# Builds of everything take half the time: headers of other libraries are compiled once for many test programs, and the
# editor's sources several at a time. With EDITABLEANIMATION_PRECOMPILE_LIBRARIES each library's headers are compiled
# once, too, for who builds one of its files after the other. Included behind project() by the presets that need it
# (CMAKE_PROJECT_INCLUDE); the preset debug does not, and notices a header that a file uses without including it.

# A program that links other parts of Qt than the first of its folder reads the headers themselves.
set(CMAKE_PCH_WARN_INVALID OFF)
set(EDITABLEANIMATION_PLAIN_HEADERS
  <algorithm> <array> <charconv> <cmath> <functional> <limits> <map> <memory> <set> <sstream> <stdexcept> <string>
  <utility> <vector>
  <boost/chrono/duration.hpp> <boost/property_tree/ptree.hpp> <boost/property_tree/xml_parser.hpp>
  <boost/ptr_container/ptr_map.hpp> <boost/ptr_container/ptr_vector.hpp> <boost/rational.hpp>)
set(EDITABLEANIMATION_QT_HEADERS
  <QMap> <QMetaMethod> <QMultiMap> <QObject> <QPair> <QPointF> <QPointer> <QSet> <QString> <QStringList>)

# share_precompiled_headers(<folder>...): one set of headers for the test programs in these folders.
function(share_precompiled_headers)
  set(owner "")
  get_property(known DIRECTORY ${PROJECT_SOURCE_DIR}/tests PROPERTY SUBDIRECTORIES)
  foreach(folder ${ARGN})
    if(NOT ${PROJECT_SOURCE_DIR}/tests/${folder} IN_LIST known)
      continue()
    endif()
    get_property(programs DIRECTORY ${PROJECT_SOURCE_DIR}/tests/${folder} PROPERTY BUILDSYSTEM_TARGETS)
    list(FILTER programs INCLUDE REGEX "Test$")
    foreach(program ${programs})
      if(owner)
        target_precompile_headers(${program} REUSE_FROM ${owner})
      else()
        target_precompile_headers(${program} PRIVATE
          ${EDITABLEANIMATION_PLAIN_HEADERS} ${EDITABLEANIMATION_QT_HEADERS} <QtTest> <rapidcheck.h>)
        set(owner ${program})
      endif()
    endforeach()
  endforeach()
endfunction()

function(build_fast)
  if(EDITABLEANIMATION_PRECOMPILE_LIBRARIES)
    target_precompile_headers(EditableAnimationBase PRIVATE ${EDITABLEANIMATION_PLAIN_HEADERS})
    target_precompile_headers(EditableAnimationModel PRIVATE
      ${EDITABLEANIMATION_PLAIN_HEADERS} ${EDITABLEANIMATION_QT_HEADERS})
    target_precompile_headers(EditableAnimationCommands PRIVATE
      ${EDITABLEANIMATION_PLAIN_HEADERS} ${EDITABLEANIMATION_QT_HEADERS} <QUndoCommand>)
  endif()
  if(TARGET curve_editor_parts)
    set_target_properties(curve_editor_document curve_editor_parts PROPERTIES UNITY_BUILD ON)
  endif()
  if(NOT EDITABLEANIMATION_TESTS)
    return()
  endif()
  # What Qt's headers hold depends on the parts of Qt that a program links: the windowless ones, or widgets too.
  share_precompiled_headers(base model)
  share_precompiled_headers(commands editor faults laws)
endfunction()

cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL build_fast)
