# Fails when a file of the engine outside engine/Platform includes an SDL header, naming the file
# and line. Only the platform layer talks to SDL; the other libraries reach it through
# engine/Platform's interfaces. Tests and benchmarks may include SDL: they play the operating
# system's part (make windows, press keys, plug in virtual pads) around the engine they drive.
# Run as `cmake -DENGINE_DIR=<engine folder> -P PlatformSeam.cmake`.
file(GLOB_RECURSE sources RELATIVE ${ENGINE_DIR} ${ENGINE_DIR}/*.h ${ENGINE_DIR}/*.cpp)
set(offences "")
foreach(source IN LISTS sources)
  if(source MATCHES "^Platform/")
    continue()
  endif()
  file(STRINGS ${ENGINE_DIR}/${source} lines)
  set(number 0)
  foreach(line IN LISTS lines)
    math(EXPR number "${number} + 1")
    if(line MATCHES "^[ \t]*#[ \t]*include[ \t]*[<\"](SDL2/)?SDL[A-Za-z0-9_]*\\.h[>\"]")
      string(APPEND offences "engine/${source}:${number}: includes an SDL header; only "
             "engine/Platform may (expected a Platform interface instead)\n")
    endif()
  endforeach()
endforeach()
if(offences)
  message(FATAL_ERROR "${offences}")
endif()
