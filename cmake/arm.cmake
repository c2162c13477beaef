# Builds for ARM on another machine, with Debian's cross-compilers, against the root that scripts/armroot makes:
# cmake --toolchain cmake/arm.cmake -DMX_ARM=armhf, or arm64. The build of a package has said which one already.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MX_ARM)
if(NOT MX_ARM)
    set(MX_ARM $ENV{DEB_HOST_ARCH})
endif()

set(CMAKE_SYSTEM_NAME Linux)
if(MX_ARM STREQUAL armhf)
    set(CMAKE_SYSTEM_PROCESSOR armv7l)
    set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
elseif(MX_ARM STREQUAL arm64)
    set(CMAKE_SYSTEM_PROCESSOR aarch64)
    set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
else()
    message(FATAL_ERROR "MX_ARM is armhf or arm64, not \"${MX_ARM}\"")
endif()
get_filename_component(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/roots/${MX_ARM} ABSOLUTE)

set(CMAKE_C_COMPILER ${CMAKE_LIBRARY_ARCHITECTURE}-gcc)
set(CMAKE_CXX_COMPILER ${CMAKE_LIBRARY_ARCHITECTURE}-g++)
# Where the root is, changes no package. A note on each interface that GCC 7 has changed says nothing about what one
# GCC builds as a whole.
set(CMAKE_C_FLAGS_INIT -ffile-prefix-map=${CMAKE_SYSROOT}=)
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT} -Wno-psabi")

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# debhelper names one that comes with a foreign architecture of dpkg only.
set(PKG_CONFIG_EXECUTABLE /usr/bin/pkg-config CACHE FILEPATH "" FORCE)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig)

# Qt takes its tools from beside its libraries, unless they are known already: these run here.
foreach(tool IN ITEMS moc rcc uic qmake)
    if(NOT TARGET Qt5::${tool})
        add_executable(Qt5::${tool} IMPORTED GLOBAL)
        set_target_properties(Qt5::${tool} PROPERTIES IMPORTED_LOCATION /usr/lib/qt5/bin/${tool})
    endif()
endforeach()
