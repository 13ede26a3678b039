# The mesh component tests; included by this folder's CMakeLists.txt.
grindle_add_tests(mesh_tests
  ${CMAKE_CURRENT_LIST_DIR}/MeshCompHandlerTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MeshDrawInputsTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MeshListTest.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MeshPrimitiveTest.cpp
)
target_link_libraries(mesh_tests PRIVATE grindle_graphics)
target_compile_definitions(mesh_tests PRIVATE GRINDLE_GAME_DIR="${CMAKE_SOURCE_DIR}/game")
