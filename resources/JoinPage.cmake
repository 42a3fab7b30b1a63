# Copies the page and joins its style sheets and its scripts into one file each: every file more is
# a round trip between two processes before the window shows something. Only these two may be used:
# in a page from a file, "self" would stand for every file there is.
# usage: cmake -D SOURCE=folder -D TARGET=folder -P JoinPage.cmake
file(READ "${SOURCE}/index.html" html)

function(join tag name)
  string(REPLACE "@" "([^\"]+)" pattern "[ \n]*${tag}")
  string(REGEX MATCHALL "${pattern}" found "${html}")
  if(NOT found)
    message(FATAL_ERROR "index.html has nothing to join in ${name}.")
  endif()
  set(joined "")
  foreach(each IN LISTS found)
    string(REGEX REPLACE "${pattern}" "\\1" file "${each}")
    file(READ "${SOURCE}/${file}" text)
    string(APPEND joined "${text}")
  endforeach()
  file(WRITE "${TARGET}/${name}" "${joined}")

  string(REGEX REPLACE "${pattern}" "" rest "${html}")
  string(REPLACE "@" "${name}" one "${tag}")
  string(REPLACE "</head>" "  ${one}\n  </head>" rest "${rest}")
  set(html "${rest}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${TARGET}")
join("<link rel=\"stylesheet\" href=\"@\">" page.css)
join("<script defer src=\"@\"></script>" page.js)
file(READ "${TARGET}/page.js" script)
string(SHA256 nonce "${script}")
string(REPLACE "src 'self'" "src 'nonce-${nonce}'" html "${html}")
string(REPLACE "<script defer" "<script nonce=\"${nonce}\" defer" html "${html}")
string(REPLACE "<link rel=\"stylesheet\"" "<link nonce=\"${nonce}\" rel=\"stylesheet\"" html "${html}")
file(WRITE "${TARGET}/index.html" "${html}")
file(COPY "${SOURCE}/velmor-bridge.js" DESTINATION "${TARGET}")
