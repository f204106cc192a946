# Makes one page of the manual out of what it says: its frame, the one style sheet and the bar of all pages are put in, so
# that the page stands by itself. The page's title and what it is about stand in its first two lines.
#
#   cmake -D SOURCES=DIR -D PAGES="index;sorular" -D NAME=index -D VERSION=1.2.3 -D OUTPUT=FILE -P page.cmake
cmake_minimum_required(VERSION 3.25)

function(read_told word page result)
  if(NOT page MATCHES "<!-- ${word}: ([^\n]*) -->\n")
    message(FATAL_ERROR "${NAME}: a page begins with its title and with what it is about")
  endif()
  set(${result} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

file(READ ${SOURCES}/kilavuz.css STYLE)
file(READ ${SOURCES}/logo.svg LOGO)
set(bar "")
foreach(other IN LISTS PAGES)
  file(READ ${SOURCES}/${other}.html page)
  read_told(title "${page}" title)
  if(other STREQUAL NAME)
    string(APPEND bar "<li aria-current=\"page\">${title}</li>\n")
    set(TITLE "${title}")
    read_told(about "${page}" ABOUT)
    string(REGEX REPLACE "^<!-- [^\n]* -->\n<!-- [^\n]* -->\n" "" CONTENT "${page}")
  else()
    string(APPEND bar "<li><a href=\"${other}.html\">${title}</a></li>\n")
  endif()
endforeach()
set(PAGES "${bar}")
configure_file(${SOURCES}/frame.in ${OUTPUT} @ONLY)
file(TOUCH ${OUTPUT})
