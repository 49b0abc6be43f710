# Sets RELEASES to what AppStream is to know of the releases: those of CHANGELOG.md, of which each begins
# "## VERSION (DATE)" and is a list. One without a date is in the making and bears that of version.cmake.
file(READ ${CMAKE_SOURCE_DIR}/CHANGELOG.md RELEASES)
string(REPLACE "&" "&amp;" RELEASES "${RELEASES}")
string(REPLACE "<" "&lt;" RELEASES "${RELEASES}")
string(REPLACE ">" "&gt;" RELEASES "${RELEASES}")
string(REPLACE "`" "" RELEASES "${RELEASES}")
string(REGEX REPLACE "^# [^\n]*\n" "" RELEASES "${RELEASES}")
string(REGEX REPLACE "\n +" " " RELEASES "${RELEASES}")
string(REGEX REPLACE "- ([^\n]*)\n" "          <li>\\1</li>\n" RELEASES "${RELEASES}")
set(begin "      <description>\n        <ul>")
set(end "        </ul>\n      </description>\n    </release>\n")
string(REGEX REPLACE "\n## ([^ \n]+) \\(([0-9-]+)\\)\n\n"
       "${end}    <release version=\"\\1\" date=\"\\2\">\n${begin}\n" RELEASES "${RELEASES}")
string(REGEX REPLACE "\n## ([^ \n]+) \\([^)\n]*\\)\n\n"
       "${end}    <release type=\"development\" version=\"\\1\" date=\"${program_day}\">\n${begin}\n"
       RELEASES "${RELEASES}")
string(LENGTH "${end}" ended)
string(SUBSTRING "${RELEASES}" ${ended} -1 RELEASES)
string(REGEX REPLACE "\n$" "" RELEASES "${RELEASES}${end}")
