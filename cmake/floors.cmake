# A floor is one folder of the house as a static library. Only the headers listed under HEADERS can
# be reached from outside, and only by floors that name this one: an include that goes the wrong
# way stops with "no such file".
#   SHOWS  floors whose types stand in our public headers
#   USES   floors that only our sources include
function(add_floor name)
  cmake_parse_arguments(F "" "" "SOURCES;HEADERS;SHOWS;USES" ${ARGN})
  set(root ${PROJECT_BINARY_DIR}/floors/${name})
  file(RELATIVE_PATH here ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  file(REMOVE_RECURSE ${root})
  set(public)
  foreach(header ${F_HEADERS})
    get_filename_component(folder ${root}/${here}/${header} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${root}/${here}/${header}
         COPY_ON_ERROR SYMBOLIC)
    list(APPEND public ${root}/${here}/${header})
  endforeach()
  add_library(${name} STATIC)
  target_sources(${name} PRIVATE ${F_SOURCES}
                 PUBLIC FILE_SET HEADERS BASE_DIRS ${root} FILES ${public})
  target_link_libraries(${name} PUBLIC ${F_SHOWS} PRIVATE ${F_USES} zimbrat_warnings)
endfunction()
