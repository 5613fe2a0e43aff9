# cmake -DHEADERS_FILE=… -DBUILD=… -DOUTPUT=… -P write-interface-stamp.cmake
#
# Writes a header with a text that is the same in two builds only if what they compile against is:
# all headers, whose names stand in the file, a line each, and how they are compiled.
file(STRINGS ${HEADERS_FILE} headers)
set(contents "${BUILD}")
foreach(header IN LISTS headers)
  file(SHA256 ${header} digest)
  string(APPEND contents "\n${digest}")
endforeach()
string(SHA256 stamp "${contents}")
file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT [[#pragma once

#define KESTROVA_INTERFACE_STAMP "kestrova-interface-@stamp@"
]])
