# Sanitizer and fuzzing flags apply to the whole build folder, so that the libraries a
# test or a fuzz target links are instrumented the same way.
#   VELDRA_SANITIZE=ON (or address): AddressSanitizer and UndefinedBehaviorSanitizer
#   VELDRA_SANITIZE=thread: ThreadSanitizer
if(VELDRA_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
  add_compile_definitions(VELDRA_TSAN=1)
elseif(VELDRA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

if(VELDRA_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "VELDRA_FUZZ needs clang (libFuzzer)")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
