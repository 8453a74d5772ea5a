# Headers of other libraries, compiled once for each library and once for each folder of test programs: builds of
# everything take less time. Included behind project() by the presets that need it (CMAKE_PROJECT_INCLUDE); builds without
# it notice a header that is not included where it is used.

# A program that links other parts of Qt than the first of its folder reads the headers themselves.
set(CMAKE_PCH_WARN_INVALID OFF)
set(EDITABLEANIMATION_PLAIN_HEADERS
  <algorithm> <array> <charconv> <cmath> <functional> <limits> <map> <memory> <set> <sstream> <stdexcept> <string>
  <utility> <vector>
  <boost/chrono/duration.hpp> <boost/property_tree/ptree.hpp> <boost/property_tree/xml_parser.hpp>
  <boost/ptr_container/ptr_map.hpp> <boost/ptr_container/ptr_vector.hpp> <boost/rational.hpp>)
set(EDITABLEANIMATION_QT_HEADERS
  <QMap> <QMetaMethod> <QMultiMap> <QObject> <QPair> <QPointF> <QPointer> <QSet> <QString> <QStringList>)

function(precompile_headers)
  target_precompile_headers(EditableAnimationBase PRIVATE ${EDITABLEANIMATION_PLAIN_HEADERS})
  if(EDITABLEANIMATION_MODEL)
    target_precompile_headers(EditableAnimationModel PRIVATE
      ${EDITABLEANIMATION_PLAIN_HEADERS} ${EDITABLEANIMATION_QT_HEADERS})
    target_precompile_headers(EditableAnimationCommands PRIVATE
      ${EDITABLEANIMATION_PLAIN_HEADERS} ${EDITABLEANIMATION_QT_HEADERS} <QUndoCommand>)
  endif()
  if(NOT EDITABLEANIMATION_TESTS)
    return()
  endif()
  # Programs that share headers must link the same parts of Qt, as nearly all of one of these folders do.
  get_property(folders DIRECTORY ${PROJECT_SOURCE_DIR}/tests PROPERTY SUBDIRECTORIES)
  list(FILTER folders INCLUDE REGEX "/(base|model|commands|editor)$")
  foreach(folder ${folders})
    get_property(programs DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
    list(FILTER programs INCLUDE REGEX "Test$")
    list(POP_FRONT programs first)
    target_precompile_headers(${first} PRIVATE
      ${EDITABLEANIMATION_PLAIN_HEADERS} ${EDITABLEANIMATION_QT_HEADERS} <QtTest> <rapidcheck.h>)
    foreach(program ${programs})
      target_precompile_headers(${program} REUSE_FROM ${first})
    endforeach()
  endforeach()
endfunction()

cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL precompile_headers)
