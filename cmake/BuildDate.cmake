# The moment that a build is dated by, in seconds since 1970: what SOURCE_DATE_EPOCH says, else the
# commit's, so that building the same source again gives the same files. "" when neither is known.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  set(VELMOR_BUILD_SECONDS "$ENV{SOURCE_DATE_EPOCH}")
else()
  execute_process(COMMAND git -C "${CMAKE_SOURCE_DIR}" log -1 --format=%ct
                  OUTPUT_VARIABLE VELMOR_BUILD_SECONDS OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(VELMOR_BUILD_SECONDS)
  set(ENV{SOURCE_DATE_EPOCH} "${VELMOR_BUILD_SECONDS}")
endif()
