# Runs a fuzz target over its corpus as a plain test: qvtools_replay(name source corpus).
function(qvtools_replay name source corpus)
  add_executable(replay_${name} ${source} ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp)
  qvtools_target(replay_${name})
  target_include_directories(replay_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(replay_${name} PRIVATE qvtools)
  add_test(NAME replay_${name} COMMAND replay_${name} ${corpus})
endfunction()
