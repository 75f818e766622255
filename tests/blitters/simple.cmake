lumivex_test(test_blitters_simple
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/test_scanlines.cpp
    ${CMAKE_CURRENT_LIST_DIR}/test_interpolated.cpp
    ${CMAKE_CURRENT_LIST_DIR}/test_blur.cpp
    ${CMAKE_CURRENT_LIST_DIR}/test_rgbmode.cpp
    ${CMAKE_CURRENT_LIST_DIR}/test_arcade.cpp
    ${CMAKE_CURRENT_LIST_DIR}/test_row_paths.cpp
  LAYER lumivex_pure)
