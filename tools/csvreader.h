#ifndef CELLFORMULA_TOOLS_CSVREADER_H
#define CELLFORMULA_TOOLS_CSVREADER_H

#include <istream>
#include <string>
#include <vector>

namespace cellformula::cli {

// Reads comma-separated records one at a time. Fields in double quotes may
// hold commas, line breaks and doubled quotes ("" for one "); lines may end
// in LF or CRLF. Malformed quoting raises InputError naming source and line.
class CsvReader {
public:
    CsvReader(std::istream& in, std::string sourceName);

    // Fills `fields` with the next record; false at the end of the input. An
    // empty line is a record with one empty field, so records match lines.
    bool nextRecord(std::vector<std::string>& fields);

private:
    std::string readField();
    std::string readQuotedField();
    std::string readPlainField();
    [[noreturn]] void fail(const std::string& problem, long line) const;

    std::istream& in_;
    std::string sourceName_;
    long line_ = 1;
};

}  // namespace cellformula::cli

#endif
