# One library per layer: a source folder (or a few) with its unit tests (Name_test.cpp beside
# the code) in one test executable. A folder's CMakeLists.txt only names its target and the
# layers it may link, and the build holds it to that: a layer sees only their headers.

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

# layer_library(<target> [FOLDERS <dir>...] [DEPS <target>...] [TEST_DEPS <target>...])
# Sources are the *.cpp files of the current folder (and of FOLDERS, relative to it);
# files ending in _test.cpp go into <target>_test instead of the library.
function(layer_library target)
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
  # Its headers are reached through its layer's include folder only (see layer_include_folders).
  set(own_folders ${CMAKE_CURRENT_SOURCE_DIR})
  foreach(folder IN LISTS ARG_FOLDERS)
    list(APPEND own_folders ${CMAKE_CURRENT_SOURCE_DIR}/${folder})
  endforeach()
  set_property(GLOBAL APPEND PROPERTY LAYER_TARGETS ${target})
  set_property(GLOBAL PROPERTY LAYER_FOLDERS_${target} ${own_folders})
  set_property(GLOBAL PROPERTY LAYER_DEPS_${target} ${ARG_DEPS})
  target_include_directories(${target} PUBLIC ${PROJECT_BINARY_DIR}/layers/${target})
  target_compile_options(${target} PRIVATE ${VANTOR_WARNINGS})
  target_link_libraries(${target} PUBLIC ${ARG_DEPS})

  if(VANTOR_BUILD_TESTS AND tests)
    add_executable(${target}_test ${tests})
    # Tests stand above every layer: they may reach test helpers wherever they are.
    target_include_directories(${target}_test PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_options(${target}_test PRIVATE ${VANTOR_WARNINGS})
    target_link_libraries(${target}_test PRIVATE ${target} ${ARG_TEST_DEPS} GTest::gmock GTest::gtest_main)
    target_compile_definitions(${target}_test PRIVATE
      VANTOR_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
      VANTOR_BINARY_DIR="${PROJECT_BINARY_DIR}")
    gtest_discover_tests(${target}_test DISCOVERY_TIMEOUT 60
      PROPERTIES ENVIRONMENT "VANTOR_SOURCE_DIR=${PROJECT_SOURCE_DIR}")
  endif()
endfunction()

# qt_layer_library(<target> ...): a folder of Qt classes (moc'd), its tests with Qt Test's
# helpers (QAbstractItemModelTester, QTest's input), arguments as for layer_library.
function(qt_layer_library target)
  find_package(Qt6 REQUIRED COMPONENTS Widgets Test)
  cmake_parse_arguments(ARG "" "" "FOLDERS;DEPS;TEST_DEPS" ${ARGN})
  layer_library(${target} FOLDERS ${ARG_FOLDERS} DEPS ${ARG_DEPS} TEST_DEPS ${ARG_TEST_DEPS} Qt6::Test)
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  if(TARGET ${target}_test)
    set_target_properties(${target}_test PROPERTIES AUTOMOC ON)
  endif()
endfunction()

# The layers' include folders. Each library sees only its own headers and those of the layers it
# links, directly or through them: its folder under ${PROJECT_BINARY_DIR}/layers holds links to
# those folders and nothing else, so an #include of a higher layer's header is not found and
# fails the build. Called once, after every layer is declared.
function(layer_include_folders)
  get_property(layers GLOBAL PROPERTY LAYER_TARGETS)
  set(all_folders)
  foreach(layer IN LISTS layers)
    get_property(folders GLOBAL PROPERTY LAYER_FOLDERS_${layer})
    foreach(folder IN LISTS folders)
      list(APPEND all_folders ${folder})
      set(owner_${folder} ${layer})
    endforeach()
  endforeach()
  # A folder holding another layer's folder is shared out file by file; any other is linked
  # whole.
  foreach(folder IN LISTS all_folders)
    set(split_${folder} FALSE)
    foreach(other IN LISTS all_folders)
      string(FIND "${other}" "${folder}/" at)
      if(at EQUAL 0 AND NOT owner_${other} STREQUAL owner_${folder})
        set(split_${folder} TRUE)
      endif()
    endforeach()
    if(split_${folder})
      # A new header there must reach the include folders at once.
      file(GLOB headers_${folder} CONFIGURE_DEPENDS ${folder}/*.h)
    endif()
  endforeach()

  file(REMOVE_RECURSE ${PROJECT_BINARY_DIR}/layers)
  foreach(layer IN LISTS layers)
    _layer_reach(${layer} reach)
    set(root ${PROJECT_BINARY_DIR}/layers/${layer})
    file(MAKE_DIRECTORY ${root})
    set(split_folders)
    set(whole_folders)
    foreach(reached IN LISTS reach)
      get_property(folders GLOBAL PROPERTY LAYER_FOLDERS_${reached})
      foreach(folder IN LISTS folders)
        if(split_${folder})
          list(APPEND split_folders ${folder})
        else()
          list(APPEND whole_folders ${folder})
        endif()
      endforeach()
    endforeach()
    # Shared-out folders first, so that a folder linked whole lands inside them; a layer's
    # folder below one of its own linked whole is there already.
    foreach(folder IN LISTS split_folders)
      file(RELATIVE_PATH relative ${PROJECT_SOURCE_DIR} ${folder})
      file(MAKE_DIRECTORY ${root}/${relative})
      foreach(header IN LISTS headers_${folder})
        get_filename_component(name ${header} NAME)
        file(CREATE_LINK ${header} ${root}/${relative}/${name} SYMBOLIC)
      endforeach()
    endforeach()
    foreach(folder IN LISTS whole_folders)
      file(RELATIVE_PATH relative ${PROJECT_SOURCE_DIR} ${folder})
      if(NOT EXISTS ${root}/${relative})
        get_filename_component(parent ${root}/${relative} DIRECTORY)
        file(MAKE_DIRECTORY ${parent})
        file(CREATE_LINK ${folder} ${root}/${relative} SYMBOLIC)
      endif()
    endforeach()
  endforeach()
endfunction()

# The layer and every layer it links, directly or through others.
function(_layer_reach layer out)
  get_property(known GLOBAL PROPERTY LAYER_REACH_${layer} SET)
  if(known)
    get_property(reach GLOBAL PROPERTY LAYER_REACH_${layer})
    set(${out} ${reach} PARENT_SCOPE)
    return()
  endif()
  get_property(layers GLOBAL PROPERTY LAYER_TARGETS)
  get_property(deps GLOBAL PROPERTY LAYER_DEPS_${layer})
  set(reach ${layer})
  foreach(dep IN LISTS deps)
    if(dep IN_LIST layers)
      _layer_reach(${dep} below)
      list(APPEND reach ${below})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES reach)
  set_property(GLOBAL PROPERTY LAYER_REACH_${layer} ${reach})
  set(${out} ${reach} PARENT_SCOPE)
endfunction()
