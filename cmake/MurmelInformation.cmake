# cmake -D TEMPLATE=… -D OUTPUT=… -D SOURCE=… -D VERSION=… -D EDITION=… -D CHANNEL=… -D BUILD_NUMBER=… -P this
# Writes what a build says about itself. A build number that is not given is the number of commits, which a release and
# whoever builds it again agree on; without a repository it is unknown.
set(identifiers_complete "app.murmel.Murmel")
set(identifiers_lite "app.murmel.Murmel.Lite")
set(identifiers_development "app.murmel.Murmel.Development")
set(IDENTIFIER "${identifiers_${EDITION}}")
if(BUILD_NUMBER STREQUAL "")
  execute_process(COMMAND git -C "${SOURCE}" rev-list --count HEAD
    RESULT_VARIABLE status OUTPUT_VARIABLE BUILD_NUMBER OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT status EQUAL 0)
    set(BUILD_NUMBER "Unknown")
  endif()
endif()
configure_file("${TEMPLATE}" "${OUTPUT}" @ONLY)
