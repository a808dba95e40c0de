# One library target per source folder, with its unit tests (Name_test.cpp beside the code)
# in one test executable. Keeping the rule here means a folder's CMakeLists.txt only names
# its target and what it may link, which is how the layering is enforced.

set(VANTOR_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)

if(VANTOR_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

# Fuzzing: every library is instrumented for libFuzzer's coverage and runs under the
# sanitizers, so a fuzz target finds faults in the code it links, not only in itself.
if(VANTOR_BUILD_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "VANTOR_BUILD_FUZZ needs clang (use the fuzz preset)")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
                      -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

# vantor_module(<target> [FOLDERS <dir>...] [DEPS <target>...] [TEST_DEPS <target>...])
# Sources are the *.cpp files of the current folder (and of FOLDERS, relative to it);
# files ending in _test.cpp go into <target>_test instead of the library.
function(vantor_module target)
  cmake_parse_arguments(ARG "" "" "FOLDERS;DEPS;TEST_DEPS" ${ARGN})
  set(patterns "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  foreach(folder IN LISTS ARG_FOLDERS)
    list(APPEND patterns "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp")
  endforeach()
  file(GLOB all_sources CONFIGURE_DEPENDS ${patterns})
  set(sources ${all_sources})
  list(FILTER sources EXCLUDE REGEX "_test\\.cpp$")
  set(tests ${all_sources})
  list(FILTER tests INCLUDE REGEX "_test\\.cpp$")

  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_options(${target} PRIVATE ${VANTOR_WARNINGS})
  target_link_libraries(${target} PUBLIC ${ARG_DEPS})

  if(VANTOR_BUILD_TESTS AND tests)
    add_executable(${target}_test ${tests})
    target_compile_options(${target}_test PRIVATE ${VANTOR_WARNINGS})
    target_link_libraries(${target}_test PRIVATE ${target} ${ARG_TEST_DEPS} GTest::gmock GTest::gtest_main)
    target_compile_definitions(${target}_test PRIVATE
      VANTOR_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
      VANTOR_BINARY_DIR="${PROJECT_BINARY_DIR}")
    gtest_discover_tests(${target}_test DISCOVERY_TIMEOUT 60
      PROPERTIES ENVIRONMENT "VANTOR_SOURCE_DIR=${PROJECT_SOURCE_DIR}")
  endif()
endfunction()

# vantor_qt_module(<target> ...): a folder of Qt classes (moc'd), its tests with Qt Test's
# helpers (QAbstractItemModelTester, QTest's input), arguments as for vantor_module.
function(vantor_qt_module target)
  find_package(Qt6 REQUIRED COMPONENTS Widgets Test)
  cmake_parse_arguments(ARG "" "" "FOLDERS;DEPS;TEST_DEPS" ${ARGN})
  vantor_module(${target} FOLDERS ${ARG_FOLDERS} DEPS ${ARG_DEPS} TEST_DEPS ${ARG_TEST_DEPS} Qt6::Test)
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  if(TARGET ${target}_test)
    set_target_properties(${target}_test PROPERTIES AUTOMOC ON)
  endif()
endfunction()
