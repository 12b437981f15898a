# Writes OUTPUT, the source of BuildInfo, for the tree at SOURCE_DIR. Run at each build; the file is rewritten only when
# the revision changes, so that nothing is built anew for the clock's sake. A fixed SOURCE_DATE_EPOCH is taken over.

set(revision 0000000000000000000000000000000000000000)
find_program(GIT_PROGRAM git)
if(GIT_PROGRAM)
  # A tree that merely lies inside somebody else's checkout has no revision.
  execute_process(COMMAND ${GIT_PROGRAM} -C ${SOURCE_DIR} -c safe.directory=${SOURCE_DIR} rev-parse --show-prefix HEAD
                  OUTPUT_VARIABLE answer RESULT_VARIABLE failed ERROR_QUIET)
  if(NOT failed AND answer MATCHES "^\n([0-9a-f]+)\n$")
    set(revision ${CMAKE_MATCH_1})
  endif()
endif()

set(old "")
if(EXISTS ${OUTPUT})
  file(READ ${OUTPUT} old)
endif()
string(FIND "${old}" "\"${revision}\"" place)
if(place GREATER_EQUAL 0 AND "$ENV{SOURCE_DATE_EPOCH}" STREQUAL "")
  return()
endif()

string(TIMESTAMP day "%Y%m%d" UTC)
string(TIMESTAMP time "%Y-%m-%d %H:%M:%S" UTC)
set(text "#include \"util/buildinfo.h\"

QString BuildInfo::version()
{
    return QStringLiteral(\"${day}\");
}

QString BuildInfo::revision()
{
    return QStringLiteral(\"${revision}\");
}

QString BuildInfo::buildTime()
{
    return QStringLiteral(\"${time}\");
}
")
if(NOT text STREQUAL old)
  file(WRITE ${OUTPUT} "${text}")
endif()
