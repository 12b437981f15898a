# How a room (a library target), a test and a benchmark are declared.

# Two precompiled headers, one for rooms without a window and one for rooms with, built once and shared.
function(morvantide_pch name)
  if(NOT MORVANTIDE_PCH)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "LINK;HEADERS" ${ARGN})
  file(WRITE ${CMAKE_BINARY_DIR}/${name}.cpp "")
  add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
  set_target_properties(${name} PROPERTIES AUTOMOC OFF)
  target_link_libraries(${name} PUBLIC ${ARG_LINK})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

# The precompiled header that a target shares.
function(morvantide_share_pch target pch)
  if(MORVANTIDE_PCH)
    target_precompile_headers(${target} REUSE_FROM ${pch})
  endif()
endfunction()

set(MORVANTIDE_CORE_HEADERS
    <algorithm> <array> <chrono> <cmath> <cstdint> <deque> <functional> <limits> <memory> <string> <utility>
    <vector> <boost/numeric/ublas/banded.hpp> <boost/numeric/ublas/matrix.hpp> <boost/numeric/ublas/vector.hpp>
    <QtCore/QByteArray> <QtCore/QDateTime> <QtCore/QFile> <QtCore/QHash> <QtCore/QList> <QtCore/QMap>
    <QtCore/QObject> <QtCore/QString> <QtCore/QStringList> <QtCore/QTimer> <QtCore/QVariant> <QtCore/QVector>)
morvantide_pch(pch_core LINK Qt5::Core HEADERS ${MORVANTIDE_CORE_HEADERS})
if(MORVANTIDE_GUI)
  morvantide_pch(pch_gui LINK Qt5::Widgets HEADERS ${MORVANTIDE_CORE_HEADERS}
                 <QtGui/QImage> <QtGui/QMouseEvent> <QtGui/QPainter> <QtWidgets/QAction> <QtWidgets/QApplication>
                 <QtWidgets/QBoxLayout> <QtWidgets/QLabel> <QtWidgets/QMainWindow> <QtWidgets/QMenu>
                 <QtWidgets/QToolButton> <QtWidgets/QWidget>)
endif()

# Puts a line "PLACE|TARGET|SIDE|NEEDED TARGETS" into the table of rooms, for tests/house. PLACE is this folder, or a file
# in it where FILE isn't empty; SIDE is "window" for what may include Qt Gui and Widgets, else "core".
function(morvantide_note_room name file side)
  file(RELATIVE_PATH place ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  string(REGEX REPLACE "/$" "" place "${place}")
  string(JOIN " " needs ${ARGN})
  set_property(GLOBAL APPEND_STRING PROPERTY MORVANTIDE_ROOMS "${place}|${name}|${side}|${needs}\n")
endfunction()

# morvantide_room(NAME [GUI] [WIDGETS] [MOC] SOURCES ... [NEEDS public targets ...] [USES private targets ...])
# GUI gives the room Qt Gui without widgets, WIDGETS both. MOC says that some header declares a QObject. NEEDS is what the
# room's headers show, USES what only its sources use: together all that the room may include. Rooms that are named must
# stand above it in the list of CMakeLists.txt. This is the one table of who may need whom; tests/house holds the includes,
# the order and the table in ARCHITECTURE.md against it.
function(morvantide_room name)
  cmake_parse_arguments(ARG "GUI;WIDGETS;MOC" "" "SOURCES;NEEDS;USES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX AUTOMOC ${ARG_MOC})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  set(side core)
  if(ARG_WIDGETS OR ARG_GUI)
    set(side window)
  endif()
  morvantide_note_room(${name} "" ${side} ${ARG_NEEDS} ${ARG_USES})
  if(ARG_WIDGETS)
    target_link_libraries(${name} PUBLIC Qt5::Widgets ${ARG_NEEDS} PRIVATE ${ARG_USES})
    morvantide_share_pch(${name} pch_gui)
  elseif(ARG_GUI)
    target_link_libraries(${name} PUBLIC Qt5::Gui ${ARG_NEEDS} PRIVATE ${ARG_USES})
    morvantide_share_pch(${name} pch_core)
  else()
    target_link_libraries(${name} PUBLIC Qt5::Core ${ARG_NEEDS} PRIVATE ${ARG_USES})
    morvantide_share_pch(${name} pch_core)
  endif()
endfunction()

# morvantide_program(NAME SOURCE [WIDGETS] USES targets ...): an executable of one source, which stands in a room's folder but
# may include what that room may not.
function(morvantide_program name source)
  cmake_parse_arguments(ARG "WIDGETS" "" "USES" ${ARGN})
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE ${ARG_USES})
  set(side core)
  if(ARG_WIDGETS)
    set(side window)
    morvantide_share_pch(${name} pch_gui)
  endif()
  morvantide_note_room(${name} ${source} ${side} ${ARG_USES})
endfunction()

# morvantide_test(tst_name [WIDGETS] [THREADS] [MOC] SOURCES ... LINK ...): one executable, one entry of the suite.
# THREADS marks a test that starts a thread, so that it runs under the thread sanitizer too. With DISPLAYS it runs on a
# virtual display instead of the offscreen platform, once for each window manager in that list; "none" is without one.
function(morvantide_test name)
  cmake_parse_arguments(ARG "WIDGETS;THREADS;MOC" "TIMEOUT" "SOURCES;LINK;DISPLAYS" ${ARGN})
  if(ARG_WIDGETS AND NOT MORVANTIDE_GUI)
    return()
  endif()
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_MOC})
  if(ARG_WIDGETS)
    target_link_libraries(${name} PRIVATE ${ARG_LINK} testsupport_gui)
    morvantide_share_pch(${name} pch_gui)
  else()
    target_link_libraries(${name} PRIVATE ${ARG_LINK} testsupport)
    morvantide_share_pch(${name} pch_core)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  if(ARG_DISPLAYS)
    foreach(manager ${ARG_DISPLAYS})
      add_test(NAME ${name}_${manager}
               COMMAND ${PROJECT_SOURCE_DIR}/tests/support/underdisplay ${manager} $<TARGET_FILE:${name}>)
      list(APPEND tests ${name}_${manager})
    endforeach()
  else()
    add_test(NAME ${name} COMMAND ${name})
    set(tests ${name})
  endif()
  set_tests_properties(${tests} PROPERTIES TIMEOUT ${ARG_TIMEOUT})
  if(ARG_THREADS)
    set_tests_properties(${tests} PROPERTIES LABELS threads)
    if(NOT TARGET thread_tests)
      add_custom_target(thread_tests) # what `./test tsan` builds
    endif()
    add_dependencies(thread_tests ${name})
  endif()
endfunction()

# morvantide_bench(name [WIDGETS] SOURCES ... LINK ...): a Google Benchmark executable. WIDGETS gives it the main of
# programs that draw.
function(morvantide_bench name)
  cmake_parse_arguments(ARG "WIDGETS" "" "SOURCES;LINK" ${ARGN})
  if(ARG_WIDGETS AND NOT MORVANTIDE_GUI)
    return()
  endif()
  if(ARG_WIDGETS)
    list(APPEND ARG_SOURCES support/windowmain.cpp)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} benchsupport)
endfunction()
