#ifndef CELLFORMULA_TOOLS_ROUNDTRIPNUMBER_H
#define CELLFORMULA_TOOLS_ROUNDTRIPNUMBER_H

#include <string>

namespace cellformula::cli {

// The shortest decimal text (15 to 17 significant digits, "%g" style, in the
// classic locale) that reads back to exactly `value`: "1234567.89",
// "0.30000000000000004", "-0", "1e+300". Scripts need the full number where
// the library's own number text keeps six digits. Infinities and NaN have
// no such text: "inf", "-inf" and "nan".
std::string roundTripNumberText(double value);

}  // namespace cellformula::cli

#endif
