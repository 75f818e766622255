lumivex_test(test_blitters_plain SOURCES ${CMAKE_CURRENT_LIST_DIR}/test_plain.cpp LAYER lumivex_pure)
