// The special functions of the elliptic filters.
#pragma once

namespace tonvane {

// Carlson's symmetric elliptic integral of the first kind, to double precision. The complete
// integral K of modulus k is CarlsonRF(0, 1 - k^2, 1). Arguments are 0 to 3e37, at most one of them
// zero; others put "invalid arguments in rf" on standard error and give what the formulas give.
// After B. C. Carlson's duplication theorem.
double CarlsonRF(double x, double y, double z);

// The Jacobian elliptic functions of u, mc = 1 - k^2 being the complementary parameter, by
// descending arithmetic-geometric means (R. Bulirsch's sncndn). A negative mc (k > 1) is turned
// into -mc*k^2 for the reciprocal modulus where the transformation has -mc/k^2: no Jacobian
// functions.
void JacobiSnCnDn(double u, double mc, double& sn, double& cn, double& dn);

}  // namespace tonvane
