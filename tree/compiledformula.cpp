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
    const ProgramNeeds needs = compile(root, operationOf(root), 0xFFFF, code);
    depth_ = static_cast<std::uint32_t>(needs.depth);
    textsUnder_ = needs.textsUnder;
    size_ = static_cast<std::uint32_t>(code.size());
    code_.reset(new Instruction[size_]);
    std::copy(code.data(), code.data() + size_, code_.get());
}

CompiledFormula::CompiledFormula(const CompiledFormula& other)
    : size_(other.size_), depth_(other.depth_), textsUnder_(other.textsUnder_) {
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
    : code_(std::move(other.code_)), size_(other.size_), depth_(other.depth_), textsUnder_(other.textsUnder_) {
    other.size_ = 0;
    other.depth_ = 0;
}

CompiledFormula& CompiledFormula::operator=(CompiledFormula&& other) noexcept {
    code_ = std::move(other.code_);
    size_ = other.size_;
    depth_ = other.depth_;
    textsUnder_ = other.textsUnder_;
    other.size_ = 0;
    other.depth_ = 0;
    return *this;
}

CompiledFormula::~CompiledFormula() = default;



double CompiledFormula::f64Evaluate() const {
    if (!code_) return 0.0;
    const std::uint16_t mask = demandMask(Asked::Number);
    return Answer(code_.get(), size_, depth_, mask, (textsUnder_ & mask) != 0).number();
}

std::string CompiledFormula::stringEvaluate() const {
    if (!code_) return std::string();
    const std::uint16_t mask = demandMask(Asked::Text);
    return Answer(code_.get(), size_, depth_, mask, (textsUnder_ & mask) != 0).text();
}

std::uint32_t CompiledFormula::exprType() const {
    if (!code_) return ExprNoType;
    const std::uint16_t mask = demandMask(Asked::Type);
    return Answer(code_.get(), size_, depth_, mask, (textsUnder_ & mask) != 0).type();
}

std::uint32_t CompiledFormula::errType() const {
    if (!code_) return ErrInvalidArg;
    const std::uint16_t mask = demandMask(Asked::Error);
    return Answer(code_.get(), size_, depth_, mask, (textsUnder_ & mask) != 0).error();
}

FormulaResult CompiledFormula::oEvaluateAll() const {
    if (!code_) return emptyResult();
    const std::uint16_t mask = resultMask(code_[size_ - 1]);
    return Answer(code_.get(), size_, depth_, mask, (textsUnder_ & mask) != 0).all();
}

}  // namespace cellformula
