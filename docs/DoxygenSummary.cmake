# Prints how many Doxygen warnings the log LOG holds, by kind, so a docs run shows at a
# glance what is left to document, and which headers under HEADERS lack a file comment:
# Doxygen lists a header's free functions, enums and constants only when the header itself
# is documented (a \file or @file block), and it does not warn when it is not.
# With FAIL true, any warning (or header without a file comment) fails the run after every
# warning has been printed.
# Run with cmake -DLOG=<file> -DHEADERS=<dir> [-DFAIL=ON] -P DoxygenSummary.cmake.
if(NOT EXISTS "${LOG}")
    message(FATAL_ERROR "no Doxygen log at ${LOG}")
endif()
file(STRINGS "${LOG}" lines REGEX "warning: ")
# Kind name, then the pattern that identifies it; the first match wins.
set(kinds
    "undocumented class or file" "warning: Compound .* is not documented|warning: .* file .* is not documented"
    "undocumented member" "is not documented"
    "parameter list mismatch" "@param is not found|parameters? .* (are|is) not documented|argument .* not found"
    "unresolved reference" "unable to resolve reference|explicit link request|no uniquely matching"
    "unknown command or markup" "[Ff]ound unknown command|unsupported xml/html tag|unexpected token|end of comment block"
)
list(LENGTH kinds n)
math(EXPR last "${n} - 1")
set(total 0)
set(other 0)
foreach(i RANGE 0 ${last} 2)
    set(count_${i} 0)
endforeach()
foreach(line IN LISTS lines)
    math(EXPR total "${total} + 1")
    set(found FALSE)
    foreach(i RANGE 0 ${last} 2)
        math(EXPR j "${i} + 1")
        list(GET kinds ${j} pattern)
        if(line MATCHES "${pattern}")
            math(EXPR count_${i} "${count_${i}} + 1")
            set(found TRUE)
            break()
        endif()
    endforeach()
    if(NOT found)
        math(EXPR other "${other} + 1")
    endif()
endforeach()
message("Doxygen: ${total} warnings (log: ${LOG})")
foreach(i RANGE 0 ${last} 2)
    if(count_${i})
        list(GET kinds ${i} kind)
        message("  ${count_${i}} ${kind}")
    endif()
endforeach()
if(other)
    message("  ${other} other")
endif()

set(count 0)
if(HEADERS)
    file(GLOB_RECURSE headers RELATIVE "${HEADERS}" "${HEADERS}/*.h")
    set(undocumented)
    foreach(h IN LISTS headers)
        file(STRINGS "${HEADERS}/${h}" tags REGEX "[\\@]file")
        if(NOT tags)
            list(APPEND undocumented ${h})
        endif()
    endforeach()
    list(LENGTH undocumented count)
    if(count)
        list(JOIN undocumented ", " names)
        message("  ${count} headers without a file comment (their free functions are not listed): ${names}")
    endif()
endif()

if(FAIL AND (total GREATER 0 OR count GREATER 0))
    foreach(line IN LISTS lines)
        message("${line}")
    endforeach()
    message(FATAL_ERROR "Doxygen: ${total} warnings and ${count} headers without a file comment; "
                        "the API reference must be warning-free (KXBASE_DOCS_WARN_AS_ERROR=ON)")
endif()
