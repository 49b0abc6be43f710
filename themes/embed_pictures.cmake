# Writes SVG files as rows of a C++ table: {name, text}.
#
# usage: cmake -D OUTPUT=FILE -D "PICTURES=FILE;FILE..." -P embed_pictures.cmake
set(rows "")
foreach(picture IN LISTS PICTURES)
  get_filename_component(name ${picture} NAME_WE)
  file(READ ${picture} svg)
  string(APPEND rows "{\"${name}\", R\"svg(${svg})svg\"},\n")
endforeach()
file(WRITE ${OUTPUT} "${rows}")
