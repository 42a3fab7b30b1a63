option(VELMOR_BUILD_TESTS "Build the tests" ON)
option(VELMOR_FUZZERS "Build the fuzz targets for libFuzzer (Clang only)" OFF)
set(VELMOR_SANITIZERS "" CACHE STRING "Sanitizers to build with, for example address,undefined")
# example.invalid is a reserved name: a build that does not set an address asks nobody.
set(VELMOR_VERSION_SERVER "https://versions.example.invalid" CACHE STRING
    "Base address of the version server, used unless VELMORDJ_VERSION_URL is set")
