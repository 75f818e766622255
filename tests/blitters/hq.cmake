lumivex_test(test_blitters_hq SOURCES ${CMAKE_CURRENT_LIST_DIR}/test_hq.cpp LAYER lumivex_pure)
