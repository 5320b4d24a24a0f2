#ifndef CELLFORMULA_TOOLS_ERRORS_H
#define CELLFORMULA_TOOLS_ERRORS_H

#include <stdexcept>
#include <string>

namespace cellformula::cli {

// The command line cannot be understood: the message is followed by the usage
// text and the program exits with status 2.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& message) : std::runtime_error(message) {}
};

// An argument is well-formed but its content is unusable (an unreadable sheet,
// a broken CSV field): the message alone is printed, status 2.
class InputError : public std::runtime_error {
public:
    explicit InputError(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace cellformula::cli

#endif
