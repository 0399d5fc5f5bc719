# API documentation: `cmake --build <dir> --target docs` runs Doxygen over the public headers
# (their plain // comments become the documentation through docs/doc_comments.py) and
# docs/mainpage.md, into <dir>/docs/html. Any Doxygen warning fails the build.
find_package(Doxygen QUIET)
find_package(Python3 QUIET COMPONENTS Interpreter)
if(NOT DOXYGEN_FOUND OR NOT Python3_Interpreter_FOUND)
  return()
endif()

set(DOXYGEN_PROJECT_NAME zeb_common)
set(DOXYGEN_PROJECT_BRIEF "General-purpose C++ utility library")
set(DOXYGEN_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/docs)
set(DOXYGEN_USE_MDFILE_AS_MAINPAGE ${PROJECT_SOURCE_DIR}/docs/mainpage.md)
set(DOXYGEN_FILE_PATTERNS *.h)
set(DOXYGEN_EXCLUDE_PATTERNS */internal/* */platform/*)
set(DOXYGEN_INPUT_FILTER "${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/docs/doc_comments.py")
set(DOXYGEN_FILTER_SOURCE_FILES NO)
set(DOXYGEN_STRIP_FROM_PATH ${PROJECT_SOURCE_DIR})
set(DOXYGEN_STRIP_FROM_INC_PATH ${PROJECT_SOURCE_DIR})
set(DOXYGEN_EXTRACT_ALL YES)
set(DOXYGEN_WARN_IF_UNDOCUMENTED NO)
set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)
set(DOXYGEN_QUIET YES)
set(DOXYGEN_ENABLE_PREPROCESSING YES)
set(DOXYGEN_MACRO_EXPANSION YES)
set(DOXYGEN_EXPAND_ONLY_PREDEF YES)
set(DOXYGEN_PREDEFINED "ZEB_API=" "ZEB_STDCALL=")
set(DOXYGEN_GENERATE_LATEX NO)

doxygen_add_docs(docs ${PROJECT_SOURCE_DIR}/zeb ${PROJECT_SOURCE_DIR}/docs/mainpage.md
  COMMENT "API documentation with Doxygen")
