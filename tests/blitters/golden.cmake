lumivex_test(test_blitters_golden
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/test_golden.cpp ${CMAKE_CURRENT_LIST_DIR}/test_picture.cpp
  LAYER lumivex_pure LIBS ZLIB::ZLIB)
