# The program and the library of its windows, which it loads later, must be of one build: both have
# the text of InterfaceStamp.h in them, which changes with any header and with the compilation.
file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
set(stamp_folder ${PROJECT_BINARY_DIR}/interface-stamp)
list(JOIN headers "\n" header_lines)
file(CONFIGURE OUTPUT ${stamp_folder}/headers.txt CONTENT "${header_lines}\n")
set(compilation "${PROJECT_VERSION} ${Qt6_VERSION} ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}")
string(APPEND compilation " ${CMAKE_BUILD_TYPE} ${CMAKE_CXX_FLAGS} ${KESTROVA_SANITIZE}")
add_custom_command(
  OUTPUT ${stamp_folder}/InterfaceStamp.h
  COMMAND ${CMAKE_COMMAND} -DHEADERS_FILE=${stamp_folder}/headers.txt -DBUILD=${compilation}
          -DOUTPUT=${stamp_folder}/InterfaceStamp.h
          -P ${CMAKE_CURRENT_SOURCE_DIR}/App/write-interface-stamp.cmake
  DEPENDS ${headers} ${stamp_folder}/headers.txt
          ${CMAKE_CURRENT_SOURCE_DIR}/App/write-interface-stamp.cmake
  VERBATIM)
add_custom_target(kestrova-interface-stamp DEPENDS ${stamp_folder}/InterfaceStamp.h)
add_library(KestrovaInterfaceStamp INTERFACE)
target_include_directories(KestrovaInterfaceStamp INTERFACE ${stamp_folder})
add_dependencies(KestrovaInterfaceStamp kestrova-interface-stamp)
