# tonvane_reference_lapack: what dgelsd, dgees and ilaenv need of the reference LAPACK and BLAS, built
# from the sources of the Debian package that the Linux build links.
#
# gfortran keeps the order of sums at every level of optimisation, so the archive gives the same bits
# as Debian's (docs/numerics.md).
set(lapack_source ${TONVANE_SOURCE_PACKAGES}/lapack)
if(NOT EXISTS ${lapack_source}/SRC/dgelsd.f)
    message(STATUS "Fetching the sources of LAPACK into ${TONVANE_SOURCE_PACKAGES}")
    execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/windows/fetch-source lapack ${TONVANE_SOURCE_PACKAGES}
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endif()

set(names
    dasum daxpy dcopy ddot dgemm dgemv dger dnrm2 drot dscal dswap dtrmm dtrmv idamax lsame xerbla
    dbdsqr dgebak dgebal dgebd2 dgebrd dgees dgehd2 dgehrd dgelq2 dgelqf dgelsd dgeqr2 dgeqrf dhseqr
    disnan dlabad dlabrd dlacn2 dlacpy dladiv dlaed6 dlaexc dlahqr dlahr2 dlaisnan dlaln2 dlals0
    dlalsa dlalsd dlamch dlamrg dlange dlanst dlanv2 dlapy2 dlaqr0 dlaqr1 dlaqr2 dlaqr3 dlaqr4 dlaqr5
    dlarf dlarfb dlarfg dlarft dlarfx dlartg dlas2 dlascl dlasd4 dlasd5 dlasd6 dlasd7 dlasd8 dlasda
    dlasdq dlasdt dlaset dlasq1 dlasq2 dlasq3 dlasq4 dlasq5 dlasq6 dlasr dlasrt dlassq dlasv2 dlasy2
    dorg2r dorghr dorgqr dorm2r dormbr dormhr dorml2 dormlq dormqr dtrexc dtrsen dtrsyl ieeeck iladlc
    iladlr ilaenv iparmq la_constants la_xisnan)
set(sources "")
foreach(name IN LISTS names)
    set(found "")
    foreach(folder BLAS/SRC SRC INSTALL)
        foreach(ending f f90 F90)
            if(NOT found AND EXISTS ${lapack_source}/${folder}/${name}.${ending})
                set(found ${lapack_source}/${folder}/${name}.${ending})
            endif()
        endforeach()
    endforeach()
    if(NOT found)
        message(FATAL_ERROR "The sources of LAPACK in ${lapack_source} have no ${name}")
    endif()
    list(APPEND sources ${found})
endforeach()

add_library(tonvane_reference_lapack STATIC ${sources})
target_compile_options(tonvane_reference_lapack PRIVATE -O2 -frecursive -ffp-contract=off -w)
