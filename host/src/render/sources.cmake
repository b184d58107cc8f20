# Raster images, the built-in panel font, the palette and the PNG encoder; node networks read
# from files and rendered onto a sphere.
target_sources(lwhost_core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/BitmapFont.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NetworkFile.cpp
  ${CMAKE_CURRENT_LIST_DIR}/NetworkRenderer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Palette.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Png.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PngFile.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Raster.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RayTracer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RenderWorld.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SceneLines.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SceneRenderer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SphereGrid.cpp)
