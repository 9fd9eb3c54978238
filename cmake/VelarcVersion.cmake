# The version of the programs and the day of its release. They stand in one place, the newest entry of
# the package's changelog: "velarc (VERSION) ..." at its head, and the day in the line that closes it.
set(velarc_changelog "${CMAKE_CURRENT_SOURCE_DIR}/packaging/debian/changelog")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${velarc_changelog}")

file(STRINGS "${velarc_changelog}" velarc_heads REGEX "^velarc \\([0-9.]+\\)")
file(STRINGS "${velarc_changelog}" velarc_feet REGEX "^ -- .+> +[A-Z][a-z][a-z], [0-9]+ ")
list(GET velarc_heads 0 velarc_head)
list(GET velarc_feet 0 velarc_foot)
string(REGEX REPLACE "^velarc \\(([0-9.]+)\\).*" "\\1" VELARC_VERSION "${velarc_head}")

string(REGEX MATCH "([0-9]+) ([A-Z][a-z][a-z]) ([0-9][0-9][0-9][0-9])" velarc_day "${velarc_foot}")
set(velarc_day_of_month "${CMAKE_MATCH_1}")
set(velarc_month_name "${CMAKE_MATCH_2}")
set(velarc_year "${CMAKE_MATCH_3}")
set(velarc_months Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)
list(FIND velarc_months "${velarc_month_name}" velarc_month)
math(EXPR velarc_month "${velarc_month} + 1")
string(REGEX REPLACE "^(.)$" "0\\1" velarc_month "${velarc_month}")
string(REGEX REPLACE "^(.)$" "0\\1" velarc_day_of_month "${velarc_day_of_month}")
set(VELARC_RELEASE_DAY "${velarc_year}-${velarc_month}-${velarc_day_of_month}")
