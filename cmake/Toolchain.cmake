# Language, warnings, sanitizers and the libraries that come from outside.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC OFF) # rooms and tests that declare QObjects ask for it
set(CMAKE_AUTORCC OFF)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Dev CACHE STRING "Dev, Release" FORCE)
endif()
set(CMAKE_CXX_FLAGS_DEV "-O1 -g1")
set(CMAKE_CXX_FLAGS_RELEASE "-O3 -g1 -DNDEBUG")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Precompiled headers and ccache agree only with these allowances.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_NOHASHDIR=1
      CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} ${CCACHE_PROGRAM})
endif()
find_program(MOLD_PROGRAM mold)
find_program(LLD_PROGRAM ld.lld)
if(MOLD_PROGRAM)
  add_link_options(-fuse-ld=mold)
elseif(LLD_PROGRAM)
  add_link_options(-fuse-ld=lld)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                    -Wno-missing-field-initializers)
if(MORVANTIDE_PCH AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-fpch-preprocess)
endif()
if(MORVANTIDE_WERROR)
  add_compile_options(-Werror)
endif()

# NaN is a value here and results must not depend on the processor: no fast-math, no contraction.
add_compile_options(-ffp-contract=off)
# uBLAS checks products twice and refuses what is asked of it, unless told that this is no debug build.
add_compile_definitions(BOOST_UBLAS_NDEBUG QT_MESSAGELOGCONTEXT QT_NO_KEYWORDS
                        QT_NO_CAST_TO_ASCII QT_DEPRECATED_WARNINGS_SINCE=0x050f00)

if(MORVANTIDE_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(MORVANTIDE_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()

if(MORVANTIDE_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "The fuzz targets need clang: cmake --preset fuzz")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined,float-cast-overflow -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(Boost REQUIRED)
find_package(fmt REQUIRED)
find_package(Qt5 5.15 REQUIRED COMPONENTS Core)
if(MORVANTIDE_GUI)
  find_package(Qt5 5.15 REQUIRED COMPONENTS Gui LinguistTools Svg Widgets)
  # Found by hand: its pkg-config file asks for OpenGL headers that nothing here needs.
  find_path(QWT_INCLUDE_DIR qwt_plot.h PATH_SUFFIXES qwt qt5/qwt REQUIRED)
  find_library(QWT_LIBRARY qwt-qt5 REQUIRED)
  add_library(Qwt::Qwt INTERFACE IMPORTED)
  target_include_directories(Qwt::Qwt SYSTEM INTERFACE ${QWT_INCLUDE_DIR})
  target_link_libraries(Qwt::Qwt INTERFACE ${QWT_LIBRARY} Qt5::Widgets)
endif()
find_package(PkgConfig REQUIRED)
pkg_check_modules(YAML REQUIRED IMPORTED_TARGET yaml-0.1)
find_package(double-conversion REQUIRED)
