#include "compiledformula.h"

#include <algorithm>

#include "program.h"

namespace cellformula {

namespace {

// What an empty program answers: a formula without a value.
FormulaResult emptyResult() {
    FormulaResult result;
    result.u32Error = ErrInvalidArg;
    return result;
}

}  // namespace

CompiledFormula::CompiledFormula(const ASTNode& root) {
    Code code;
    depth_ = static_cast<std::uint32_t>(compile(root, operationOf(root), 0xFFFF, code));
    size_ = static_cast<std::uint32_t>(code.size());
    code_.reset(new Instruction[size_]);
    std::copy(code.data(), code.data() + size_, code_.get());
}

CompiledFormula::CompiledFormula(const CompiledFormula& other) : size_(other.size_), depth_(other.depth_) {
    if (other.code_) {
        code_.reset(new Instruction[size_]);
        std::copy(other.code_.get(), other.code_.get() + size_, code_.get());
    }
}

CompiledFormula& CompiledFormula::operator=(const CompiledFormula& other) {
    if (this != &other) *this = CompiledFormula(other);
    return *this;
}

CompiledFormula::CompiledFormula(CompiledFormula&& other) noexcept
    : code_(std::move(other.code_)), size_(other.size_), depth_(other.depth_) {
    other.size_ = 0;
    other.depth_ = 0;
}

CompiledFormula& CompiledFormula::operator=(CompiledFormula&& other) noexcept {
    code_ = std::move(other.code_);
    size_ = other.size_;
    depth_ = other.depth_;
    other.size_ = 0;
    other.depth_ = 0;
    return *this;
}

CompiledFormula::~CompiledFormula() = default;

double CompiledFormula::f64Evaluate() const {
    if (!code_) return 0.0;
    return Answer(code_.get(), size_, depth_, demandMask(Asked::Number)).number();
}

std::string CompiledFormula::stringEvaluate() const {
    if (!code_) return std::string();
    return Answer(code_.get(), size_, depth_, demandMask(Asked::Text)).text();
}

std::uint32_t CompiledFormula::exprType() const {
    if (!code_) return ExprNoType;
    return Answer(code_.get(), size_, depth_, demandMask(Asked::Type)).type();
}

std::uint32_t CompiledFormula::errType() const {
    if (!code_) return ErrInvalidArg;
    return Answer(code_.get(), size_, depth_, demandMask(Asked::Error)).error();
}

FormulaResult CompiledFormula::oEvaluateAll() const {
    if (!code_) return emptyResult();
    return Answer(code_.get(), size_, depth_, resultMask(code_[size_ - 1])).all();
}

}  // namespace cellformula
