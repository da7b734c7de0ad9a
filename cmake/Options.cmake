# Warnings, sanitizers and hardening that hold for every target.
add_library(emberdeck_options INTERFACE)
target_compile_options(emberdeck_options INTERFACE
  -Wall -Wextra -Wshadow -Wcast-align -Wno-missing-field-initializers
  "$<$<COMPILE_LANGUAGE:CXX>:-Wpedantic;-Wnon-virtual-dtor;-Woverloaded-virtual>"
  "$<$<BOOL:${EMBERDECK_WERROR}>:-Werror>")
# Optimizing, g++ 12 sees copies of half the address space in std::string's own appending.
target_compile_options(emberdeck_options INTERFACE
  "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<COMPILE_LANGUAGE:CXX>,$<CONFIG:Release>>:-Wno-restrict;-Wno-stringop-overflow>")
# Report paths from the source tree, not from the machine that built it.
target_compile_options(emberdeck_options INTERFACE "-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=")

if(EMBERDECK_SANITIZE)
  target_compile_options(emberdeck_options INTERFACE
    -fsanitize=${EMBERDECK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(emberdeck_options INTERFACE -fsanitize=${EMBERDECK_SANITIZE})
  # The sanitizer owns malloc and free: the program's own entry points step aside.
  target_compile_definitions(emberdeck_options INTERFACE EMBERDECK_SANITIZED=1)
endif()
