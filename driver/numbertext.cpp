#include <locale>
#include <sstream>
#include <string>

#include "spreadsheethelper.h"

namespace SpreadSheetHelper {

// Reads like the standard stream extraction: an int that ends the text, or
// else a double from where the int extraction stopped (so "12 34" and "--5"
// count, "42 " and "5." do not).
bool bIsNumber(const std::string& text) {
    std::istringstream stream(text);
    // A host's decimal comma or digit grouping must not change what a number is.
    stream.imbue(std::locale::classic());
    int integer = 0;
    stream >> integer;
    if (!stream.fail() && !stream.bad() && stream.eof()) return true;
    stream.clear();
    double number = 0.0;
    stream >> number;
    return !stream.fail() && !stream.bad() && stream.eof();
}

}  // namespace SpreadSheetHelper
