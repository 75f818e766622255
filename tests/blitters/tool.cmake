# The preview tool, driven from the command line.
if(TARGET lumivex-blit)
  add_test(NAME lumivex_blit_cli COMMAND sh ${CMAKE_CURRENT_LIST_DIR}/check_lumivex_blit.sh $<TARGET_FILE:lumivex-blit>)
  set_tests_properties(lumivex_blit_cli PROPERTIES TIMEOUT 60 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endif()
