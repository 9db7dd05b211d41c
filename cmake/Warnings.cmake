# Warnings are errors on every target of ours; third-party headers come in as SYSTEM.
add_library(veldra_warnings INTERFACE)
target_compile_options(veldra_warnings INTERFACE -Wall -Wextra -Wpedantic -Werror)
