# zimbrat_resources(TARGET): icon, manifest and version for an executable with windows. In a static
# library they would be left out without a word.
function(zimbrat_resources target)
  set(home ${CMAKE_CURRENT_FUNCTION_LIST_DIR})
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${home}/zimbrat.rc.in ${script} @ONLY)
  # The generator does not see what a resource script takes in.
  set_source_files_properties(${script} PROPERTIES
    INCLUDE_DIRECTORIES ${home}
    OBJECT_DEPENDS "${home}/zimbrat.manifest;${home}/zimbrat.ico")
  target_sources(${target} PRIVATE ${script})
endfunction()
