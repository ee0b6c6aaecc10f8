# What every target of the project is compiled with.
add_library(ombrix_options INTERFACE)
target_compile_options(ombrix_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)
# Stored calibration data depend on Single arithmetic being done in single steps.
target_compile_options(ombrix_options INTERFACE -ffp-contract=off)
if(CMAKE_UNITY_BUILD)
    # It takes a source for a header, because another source includes it.
    target_compile_options(ombrix_options INTERFACE -Wno-subobject-linkage)
endif()
target_include_directories(ombrix_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

if(OMBRIX_SANITIZE)
    target_compile_options(ombrix_options INTERFACE -fsanitize=address,undefined
                           -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(ombrix_options INTERFACE -fsanitize=address,undefined)
endif()
