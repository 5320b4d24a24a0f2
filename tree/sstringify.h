#ifndef CELLFORMULA_SSTRINGIFY_H
#define CELLFORMULA_SSTRINGIFY_H

#include <sstream>
#include <string>

namespace QuandelUtils {

// The library's one number-to-text conversion: a fresh stream with default
// settings, so 1000000 reads "1e+06" and 1.0/3 reads "0.333333". Internal
// linkage gives every source file that uses it its own instance.
template <typename Value>
static std::string sstringify(const Value& value) {
    std::stringstream stream;
    stream << value;
    return stream.str();
}

}  // namespace QuandelUtils

#endif
