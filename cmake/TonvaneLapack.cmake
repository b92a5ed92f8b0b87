# tonvane::lapack: LAPACK and BLAS.
#
# The reference libraries as static archives, so that one response gives the same filter words on
# every machine: libraries that pick kernels by processor, or a shared library that the machine's
# administrator can exchange, give other words. docs/numerics.md has the measurements.
#
# A build for Windows compiles the sources of these archives; one without them names its own libraries
# (a reference LAPACK built from source) in TONVANE_LAPACK_LIBRARIES.
set(TONVANE_LAPACK_LIBRARIES "" CACHE STRING
    "LAPACK, BLAS and Fortran run-time libraries in link order; empty for the system's reference archives")

add_library(tonvane_lapack INTERFACE)
add_library(tonvane::lapack ALIAS tonvane_lapack)

if(TONVANE_LAPACK_LIBRARIES)
    target_link_libraries(tonvane_lapack INTERFACE ${TONVANE_LAPACK_LIBRARIES})
    return()
endif()
if(WIN32)
    include(windows/ReferenceLapack)
    target_link_libraries(tonvane_lapack INTERFACE tonvane_reference_lapack)
    return()
endif()

# The folders lapack/ and blas/ hold the reference archives where the names above them are switched
# between implementations.
find_library(TONVANE_LAPACK_ARCHIVE NAMES liblapack.a PATH_SUFFIXES lapack)
find_library(TONVANE_BLAS_ARCHIVE NAMES libblas.a PATH_SUFFIXES blas)
find_library(TONVANE_GFORTRAN_ARCHIVE NAMES libgfortran.a
    HINTS ${CMAKE_Fortran_IMPLICIT_LINK_DIRECTORIES})
find_library(TONVANE_QUADMATH_ARCHIVE NAMES libquadmath.a
    HINTS ${CMAKE_Fortran_IMPLICIT_LINK_DIRECTORIES})
if(NOT TONVANE_LAPACK_ARCHIVE OR NOT TONVANE_BLAS_ARCHIVE OR NOT TONVANE_GFORTRAN_ARCHIVE)
    message(FATAL_ERROR "The static archives liblapack.a, libblas.a (on Debian: liblapack-dev and "
        "libblas-dev) and libgfortran.a (gfortran) are needed; or name libraries in "
        "TONVANE_LAPACK_LIBRARIES")
endif()
target_link_libraries(tonvane_lapack INTERFACE
    ${TONVANE_LAPACK_ARCHIVE} ${TONVANE_BLAS_ARCHIVE} ${TONVANE_GFORTRAN_ARCHIVE})
# Part of the Fortran run-time on processors without 128-bit floating point in hardware.
if(TONVANE_QUADMATH_ARCHIVE)
    target_link_libraries(tonvane_lapack INTERFACE ${TONVANE_QUADMATH_ARCHIVE})
endif()
target_link_libraries(tonvane_lapack INTERFACE m)
