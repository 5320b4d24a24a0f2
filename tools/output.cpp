#include "output.h"

#include <sstream>

#include "astnode.h"
#include "sstringify.h"

namespace cellformula::cli {

std::string typeName(std::uint32_t exprType) {
    switch (exprType) {
        case ExprNumber: return "number";
        case ExprString: return "text";
        case ExprNoType: return "none";
        default: return "type" + std::to_string(exprType);
    }
}

std::string errorName(std::uint32_t errType) {
    switch (errType) {
        case ErrNone: return "ErrNone";
        case ErrInvalidArg: return "ErrInvalidArg";
        case ErrNoValue: return "ErrNoValue";
        case ErrInfinite: return "ErrInfinite";
        case ErrDomain: return "ErrDomain";
        case ErrWrongType: return "ErrWrongType";
        case ErrUnmaskable: return "ErrUnmaskable";
        default: return "Err" + std::to_string(errType);
    }
}

std::string escapeValue(const std::string& value) {
    std::string escaped;
    escaped.reserve(value.size());
    for (const char c : value) {
        switch (c) {
            case '\\': escaped += "\\\\"; break;
            case '\t': escaped += "\\t"; break;
            case '\n': escaped += "\\n"; break;
            case '\r': escaped += "\\r"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

std::string resultLine(ASTNode& root) {
    const std::uint32_t type = root.exprType();
    const std::uint32_t error = root.errType();
    const std::string value = type == ExprNumber ? QuandelUtils::sstringify(root.f64Evaluate())
                                                 : root.stringEvaluate();
    return escapeValue(value) + '\t' + typeName(type) + '\t' + std::to_string(error) + ' ' +
           errorName(error);
}

std::string treeOutline(const ASTNode& root) {
    std::stringstream stream;
    root.vPrintNode(stream, 0);
    std::string outline = stream.str();
    if (outline.empty() || outline.back() != '\n') outline += '\n';
    return outline;
}

}  // namespace cellformula::cli
