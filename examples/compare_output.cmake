# Runs PROGRAM, which has to succeed and print just what the file EXPECTED holds.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE printed RESULT_VARIABLE status)
file(READ ${EXPECTED} expected)
if(NOT status EQUAL 0 OR NOT printed STREQUAL expected)
    message(FATAL_ERROR "ended with status ${status} and printed\n${printed}")
endif()
