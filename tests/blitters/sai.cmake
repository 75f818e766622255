lumivex_test(test_blitters_sai
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/test_sai.cpp ${CMAKE_CURRENT_LIST_DIR}/test_smoothing.cpp
          ${CMAKE_CURRENT_LIST_DIR}/test_picture.cpp
  LAYER lumivex_pure)
