# How every target of the project is compiled. Targets link `vessant_flags`.

add_library(vessant_flags INTERFACE)
target_compile_options(vessant_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
    -ffunction-sections -fdata-sections)
target_include_directories(vessant_flags INTERFACE ${PROJECT_SOURCE_DIR}/native)

if(VESSANT_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(VESSANT_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()
