# What every target of the project is compiled with. Warnings are errors in our presets only: what
# another compiler warns of must not keep a packager from building.
add_library(ombrix_options INTERFACE)
target_compile_options(ombrix_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion)
# Stored calibration data depend on Single arithmetic being done in single steps.
target_compile_options(ombrix_options INTERFACE -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Under -O3 GCC 12 sees overlaps in sums of strings that cannot be.
    target_compile_options(ombrix_options INTERFACE -Wno-restrict)
endif()
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # It takes a source for a header, because another source includes it.
    target_compile_options(ombrix_options INTERFACE -Wno-subobject-linkage)
endif()

if(WIN32)
    # The functions of Windows 10, and of its headers no more than is asked for.
    target_compile_definitions(ombrix_options INTERFACE _WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN
                               CLI11_HAS_FILESYSTEM=0)
endif()

if(OMBRIX_SANITIZE)
    target_compile_options(ombrix_options INTERFACE -fsanitize=address,undefined
                           -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(ombrix_options INTERFACE -fsanitize=address,undefined)
endif()
