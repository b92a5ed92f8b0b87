// The LAPACK routines in use, through the reference (Fortran) interface: every argument by address,
// matrices column by column, one hidden length for each character argument at the end.
#pragma once

#include <cstddef>

extern "C" {

void dgelsd_(const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b,
             const int* ldb, double* s, const double* rcond, int* rank, double* work,
             const int* lwork, int* iwork, int* info);

void dgees_(const char* jobvs, const char* sort, int (*select)(const double*, const double*),
            const int* n, double* a, const int* lda, int* sdim, double* wr, double* wi, double* vs,
            const int* ldvs, double* work, const int* lwork, int* bwork, int* info,
            size_t jobvsLength, size_t sortLength);

void xerbla_(const char* routine, const int* argument, size_t routineLength);

}  // extern "C"
