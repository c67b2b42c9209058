# Checks that includes point downward only: cmake -DROOT=<src folder> -P tools/layers.cmake
# The longest matching prefix decides. A folder may include its own level and anything below; docs/layers.md explains.
set(levels
    "platform/=0"
    "store/=1" "calc/rounding/=1"
    "session/=2"
    "tariff/=3" "declarations/lines/=3"
    "companies/=4"
    "calc/=5"
    "import/=6"
    "declarations/=7"
    "reports/=8"
    "setup/=8" "update/=8"
    "ui/=9"
    "screens/=10"
    "app/=11" "cli/=11")

function(level_of path out)
  set(best -1)
  set(best_length 0)
  if(path MATCHES "/screens/")
    set(path "screens/")
  endif()
  foreach(entry IN LISTS levels)
    string(REPLACE "=" ";" entry "${entry}")
    list(GET entry 0 prefix)
    list(GET entry 1 level)
    string(LENGTH "${prefix}" length)
    string(FIND "${path}" "${prefix}" at)
    if(at EQUAL 0 AND length GREATER best_length)
      set(best ${level})
      set(best_length ${length})
    endif()
  endforeach()
  set(${out} ${best} PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE sources RELATIVE "${ROOT}" "${ROOT}/*.cpp" "${ROOT}/*.h")
set(failed 0)
set(checked 0)
foreach(source IN LISTS sources)
  if(source MATCHES "^pch(_qt)?\\.h$")
    continue()
  endif()
  level_of("${source}" own)
  if(own EQUAL -1)
    message(SEND_ERROR "${source}: in no known layer")
    math(EXPR failed "${failed} + 1")
  endif()
  file(STRINGS "${ROOT}/${source}" includes REGEX "^#include (\"|<Q)")
  foreach(line IN LISTS includes)
    math(EXPR checked "${checked} + 1")
    if(line MATCHES "<Q")
      # the start-up sequence and the command table run without a window; the shell around them has one
      if(own LESS 9 OR source MATCHES "^cli/" OR (source MATCHES "^app/" AND NOT source MATCHES "^app/(desktop|screens)/"))
        message(SEND_ERROR "${source}: Qt below the screens: ${line}")
        math(EXPR failed "${failed} + 1")
      endif()
      continue()
    endif()
    string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" target "${line}")
    level_of("${target}" other)
    if(other GREATER own)
      message(SEND_ERROR "${source}: includes ${target}, which lies above it")
      math(EXPR failed "${failed} + 1")
    endif()
  endforeach()
endforeach()
list(LENGTH sources count)
if(checked EQUAL 0)
  message(FATAL_ERROR "layers: nothing to check below ${ROOT}")
endif()
message(STATUS "layers: ${count} files, ${checked} includes, ${failed} wrong")
