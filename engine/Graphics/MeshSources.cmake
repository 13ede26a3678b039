# Mesh components, the mesh store and the generated primitives; included by this folder's
# CMakeLists.txt into the graphics library.
target_sources(grindle_graphics PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/MeshCompHandler.cpp
  ${CMAKE_CURRENT_LIST_DIR}/MeshCompHandlerDraw.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Meshes/ListedMeshes.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Meshes/MeshDrawInputs.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Meshes/MeshStore.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Meshes/PrimitiveCatalogue.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Meshes/PrimitiveGenerators.cpp
)
target_include_directories(grindle_graphics PUBLIC ${GLM_INCLUDE_DIR})
