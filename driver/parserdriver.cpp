#include "parserdriver.h"

#include <iostream>
#include <optional>
#include <sstream>

#include "parser.hh"
#include "scanner.h"
#include "syntaxerroradvice.h"
#include "syntaxerrorreader.h"

namespace ExpressionParser {

// Everything one parse needs, created once per driver and reused: the scanner
// reading the formula and the parser pulling from the scanner.
struct ParsingContext {
    explicit ParsingContext(ParserDriver& driver) : scanner(&unusedStream, nullptr), parser(driver) {}

    // The scanner reads the formula in place; the engine still wants a stream.
    std::istringstream unusedStream;
    Scanner scanner;
    Parser parser;
    std::uint64_t maxRangeCells = ParserDriver::kDefaultMaxRangeCells;
    std::ostream* errorStream = &std::cerr;
    // Engaged while a formula is parsed: its ranges share one budget.
    std::optional<std::uint64_t> rangeCellsInFormula;

    // The formula being parsed, for locating a syntax error in it.
    const std::string* hostText = nullptr;
    bool numberPrefixed = false;
    bool hasSyntaxError = false;
    SyntaxError syntaxError;

    // The text the parser reads: the host's, or "=" and a bare number.
    SyntaxErrorReader errorReader(std::string& prefixed) const {
        if (!numberPrefixed) return SyntaxErrorReader(*hostText, 0);
        prefixed = "=" + *hostText;
        return SyntaxErrorReader(prefixed, 1);
    }
};

namespace {

// Opens the range budget of one formula for the length of its parse.
class FormulaBudget {
public:
    explicit FormulaBudget(ParsingContext& context) : context_(context) { context_.rangeCellsInFormula = 0; }
    ~FormulaBudget() { context_.rangeCellsInFormula.reset(); }
    FormulaBudget(const FormulaBudget&) = delete;
    FormulaBudget& operator=(const FormulaBudget&) = delete;

private:
    ParsingContext& context_;
};

}  // namespace

ParserDriver::ParserDriver()
    : poRoot_(nullptr), poSource_(nullptr), poContext_(new ParsingContext(*this)) {}

ParserDriver::~ParserDriver() {
    poRoot_ = nullptr;
    poSource_ = nullptr;
    delete poContext_;
}

ParserDriver& ParserDriver::operator=(const ParserDriver& other) {
    if (this == &other) return *this;
    oErrorText_ = other.oErrorText_;
    // The error as data goes with its text.
    poContext_->hasSyntaxError = other.poContext_->hasSyntaxError;
    poContext_->syntaxError = other.poContext_->syntaxError;
    if (poSource_ == nullptr && other.poSource_ != nullptr) poSource_ = other.poSource_->poClone();
    return *this;
}

ASTNode* ParserDriver::poParseExpression(const std::string& text) {
    // A host that parses again from inside its own variable source would
    // pull the scanner and parser out from under the parse that asked it.
    if (poContext_->hostText != nullptr) {
        oErrorText_ = "poParseExpression called during a parse on the same driver";
        return nullptr;
    }
    poRoot_ = nullptr;
    oErrorText_.clear();
    poContext_->hasSyntaxError = false;
    // A text that begins with "=" never reads as a number, so the costly
    // number test is only needed for the others; a number is read as the
    // formula "=" followed by it.
    const bool formulaText = !text.empty() && text[0] == '=';
    if (!formulaText && !SpreadSheetHelper::bIsNumber(text)) return nullptr;

    poContext_->hostText = &text;
    poContext_->numberPrefixed = !formulaText;
    poContext_->scanner.vSetText(formulaText ? "" : "=", text);
    poContext_->scanner.yyrestart(poContext_->unusedStream);

    const FormulaBudget budget(*poContext_);
    int result = 1;
    try {
        result = poContext_->parser.parse();
    } catch (...) {
        // A tree already handed over by an earlier formula in the same text
        // (after a byte 0) is ours to free when the parse does not finish.
        delete poRoot_;
        poRoot_ = nullptr;
        poContext_->hostText = nullptr;
        throw;
    }
    if (result != 0) {
        delete poRoot_;
        poRoot_ = nullptr;
        // A failed range says so only in its message.
        std::string prefixed;
        if (!poContext_->hasSyntaxError &&
            poContext_->errorReader(prefixed).fromRangeMessage(oErrorText_, poContext_->syntaxError)) {
            poContext_->hasSyntaxError = true;
        }
        if (poContext_->hasSyntaxError) SyntaxErrorAdvice::addTo(text, poContext_->maxRangeCells, poContext_->syntaxError);
    }
    poContext_->hostText = nullptr;
    if (result == 0) oErrorText_.clear();
    return poRoot_;
}

void ParserDriver::vSetASTNode(ASTNode* root) {
    // A second formula after a byte 0 replaces the first; the first is ours.
    if (poRoot_ != nullptr && poRoot_ != root) delete poRoot_;
    poRoot_ = root;
}

void ParserDriver::vSetCalcCollection(CalculationCollectionBase* source) {
    poSource_ = source;
}

std::string& ParserDriver::oGetErrorMsg() {
    return oErrorText_;
}

VariableRecord ParserDriver::getVariableFrom(const std::string& name) const {
    if (poSource_ == nullptr) return VariableRecord{ExprNoType, nullptr, nullptr, ErrInvalidArg};
    return poSource_->oGetVariable(name);
}

const SyntaxError* ParserDriver::poGetSyntaxError() const {
    return poContext_->hasSyntaxError ? &poContext_->syntaxError : nullptr;
}

void ParserDriver::error(const std::string& message) {
    oErrorText_ = message;
    if (poContext_->errorStream != nullptr) *poContext_->errorStream << oErrorText_ << std::endl;
}

void ParserDriver::error(const location& where, const std::string& message) {
    if (poContext_->hostText != nullptr) {
        std::string prefixed;
        poContext_->syntaxError = poContext_->errorReader(prefixed).fromParserMessage(where, message);
        poContext_->hasSyntaxError = true;
    }
    std::ostringstream text;
    text.imbue(std::locale::classic());  // column 1234 must not print as "1.234"
    text << where << ": " << message;
    error(text.str());
}

void ParserDriver::vSetErrorStream(std::ostream* stream) {
    poContext_->errorStream = stream;
}

void ParserDriver::vSetMaxRangeCells(std::uint64_t cells) {
    poContext_->maxRangeCells = cells;
}

std::uint64_t ParserDriver::u64GetMaxRangeCells() const {
    return poContext_->maxRangeCells;
}

void ParserDriver::vSetTrace(bool enabled) {
    poContext_->scanner.vSetDebug(enabled);
    poContext_->parser.set_debug_level(enabled ? 1 : 0);
}

std::uint64_t ParserDriver::formulaRangeCells() const {
    return poContext_->rangeCellsInFormula.value_or(0);
}

void ParserDriver::addFormulaRangeCells(std::uint64_t cells) {
    if (poContext_->rangeCellsInFormula) *poContext_->rangeCellsInFormula += cells;
}

Scanner& ParserDriver::scanner() {
    return poContext_->scanner;
}

}  // namespace ExpressionParser
