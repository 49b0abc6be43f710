# The toolchain of what `dependencies` has put into its cache: TONEWRIGHT_WINDOWS_CACHE of the
# environment or, where that names none, the user's folder for what can be made again.
if(NOT TONEWRIGHT_WINDOWS_CACHE)
  set(caches "$ENV{XDG_CACHE_HOME}")
  if(NOT caches)
    set(caches "$ENV{HOME}/.cache")
  endif()
  set(folder "$ENV{TONEWRIGHT_WINDOWS_CACHE}")
  if(NOT folder)
    set(folder "${caches}/tonewright-windows")
  endif()
  set(TONEWRIGHT_WINDOWS_CACHE "${folder}" CACHE PATH "Where `dependencies` has put Qt and the rest")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TONEWRIGHT_WINDOWS_CACHE)
include(${TONEWRIGHT_WINDOWS_CACHE}/windows/lib/cmake/Qt6/qt.toolchain.cmake)
# Nor is there a path of the checkout in what is made.
get_filename_component(checkout ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
get_filename_component(checkout ${checkout} DIRECTORY)
string(APPEND CMAKE_CXX_FLAGS_INIT " \"-ffile-prefix-map=${checkout}=.\"")
