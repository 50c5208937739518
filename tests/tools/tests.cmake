# The scene tool, run as a user runs it (the program and the example scenes are found by path).
find_package(nlohmann_json 3 REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
krgel_test_program(krgel_tools_tests tools/krgescene_test.cpp)
target_link_libraries(krgel_tools_tests PRIVATE nlohmann_json::nlohmann_json)
add_dependencies(krgel_tools_tests krgescene)
target_compile_definitions(krgel_tools_tests PRIVATE
  KRGESCENE_PATH="$<TARGET_FILE:krgescene>"
  KRGEL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
add_test(NAME KrGeScene.PicturesAreWellFormedWithOneElementPerEntityAndMark
  COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/tools/check_scene_svgs.py
          $<TARGET_FILE:krgescene> ${PROJECT_SOURCE_DIR}/examples/scenes)
