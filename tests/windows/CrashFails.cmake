# cmake -D RUNNER=tools/wine -D PROBE=crash_probe.exe -P CrashFails.cmake: the runner must pass a living program, and
# must fail a crashing one by the crash's own exit code, neither by a time-out nor for want of the program.
set(crash_code 5)

execute_process(COMMAND ${RUNNER} ${PROBE} live OUTPUT_VARIABLE said RESULT_VARIABLE code TIMEOUT 120)
if(NOT code EQUAL 0 OR NOT said MATCHES "still alive")
  message(FATAL_ERROR "The living probe ended with ${code} and said: ${said}")
endif()

execute_process(COMMAND ${RUNNER} ${PROBE} OUTPUT_VARIABLE said RESULT_VARIABLE code TIMEOUT 120)
if(NOT code EQUAL crash_code OR NOT said MATCHES "about to crash" OR said MATCHES "still alive")
  message(FATAL_ERROR "The crashing probe ended with ${code} and said: ${said}")
endif()
