#include "formulas.h"

#include "sheet.h"

// ATAN2, TEXT, LEFT and RIGHT calls form a whole expression and a function
// call is no base of "^" in our grammar, so such calls stand in parentheses;
// our ATAN2 takes the abscissa first.
const std::vector<PeerFormula>& comparableFormulas() {
    static const std::vector<PeerFormula> formulas = {
        {"=A1*2+B1", "A1*2+B1"},
        {"=(A1+B2)*(C3-D4)/2", "(A1+B2)*(C3-D4)/2"},
        {"=A1^2+B1^2-2*A1*B1", "A1^2+B1^2-2*A1*B1"},
        {"=-A1+B1*C1-D1/E1", "-A1+B1*C1-D1/E1"},
        {"=1.5*A10+2.25*B20-3.75*C30+4*D40", "1.5*A10+2.25*B20-3.75*C30+4*D40"},
        {"=(A1*B1+C1*D1+E1*F1)/(A2+B2+C2)-G3^0.5", "(A1*B1+C1*D1+E1*F1)/(A2+B2+C2)-G3^0.5"},
        {"=SQRT(A1*A1+B1*B1)", "sqrt(A1*A1+B1*B1)"},
        {"=SIN(A1)*COS(B1)+TAN(C1)", "sin(A1)*cos(B1)+tan(C1)"},
        {"=LN(A1)+LOG(B1)", "ln(A1)+log10(B1)"},
        {"=(ATAN2(A1;B1))*180/PI()", "atan2(B1,A1)*180/_pi"},
        {"=MAX(A1;B1;C1)-MIN(A1;B1;C1)", "max(A1,B1,C1)-min(A1,B1,C1)"},
        {"=SUM(A1;B2;C3;D4)/4", "sum(A1,B2,C3,D4)/4"},
        {"=IF(A1>B1;A1-B1;B1-A1)", "A1>B1?A1-B1:B1-A1"},
        {"=IF(AND(A1>0;B1<10);SQRT(A1)*B1;0)", "(A1>0&&B1<10)?sqrt(A1)*B1:0"},
        {"=SQRT((SIN(A1))^2+(COS(A1))^2)*LOG(A2;2)", "sqrt(sin(A1)^2+cos(A1)^2)*ln(A2)/ln(2)"},
        {"=MAX(MIN(A1+1;B1*2);MIN(C1-1;D1/2))+SUM(E1;F1;G1)", "max(min(A1+1,B1*2),min(C1-1,D1/2))+sum(E1,F1,G1)"},
    };
    return formulas;
}

const std::vector<std::string>& sheetFormulas() {
    static const std::vector<std::string> formulas = [] {
        std::vector<std::string> all;
        for (const PeerFormula& formula : comparableFormulas()) all.emplace_back(formula.ours);
        // Column Z of the benchmark sheet holds texts.
        const char* const sheetOnly[] = {
            "=SUM(A1:B3)*2",
            "=SUM(A1:J10)/100",
            "=MAX(A1:D10)-MIN(A1:D10)",
            "=OR(A1:C3)",
            "=IF(A1>0;\"yes\";\"no\")",
            "=\"Total: \"+(TEXT(A1;\"000.00\"))",
            "=(LEFT(Z1;4))+(RIGHT(Z2;2))",
            "=IF(Z3=\"item Z3\";SUM(A3:Y3);-1)",
            "=IF(ISERROR(A1/B1);0;A1/B1)",
            "=AND(A1>0;B1<10;NOT(C1=0))",
            "=DEC2HEX(255)+\"h\"",
            "3.25",
        };
        for (const char* formula : sheetOnly) all.emplace_back(formula);
        return all;
    }();
    return formulas;
}

std::string longSum(std::size_t bytes, bool withEquals) {
    std::string text = withEquals ? "=1" : "1";
    for (int term = 2; text.size() < bytes; ++term) text += "+" + std::to_string(term);
    return text;
}

std::string nestedParentheses(int depth, bool withEquals) {
    std::string text = withEquals ? "=" : "";
    text.append(static_cast<std::size_t>(depth), '(');
    text += "1";
    text.append(static_cast<std::size_t>(depth), ')');
    return text;
}

std::string rangeSum(int cells) {
    const int rows = cells / 100 > 0 ? cells / 100 : 1;
    return "=SUM(A1:CV" + std::to_string(rows) + ")";
}

namespace {

std::string repeated(const std::string& piece, int times) {
    std::string text;
    text.reserve(piece.size() * static_cast<std::size_t>(times));
    for (int i = 0; i < times; ++i) text += piece;
    return text;
}

}  // namespace

const std::vector<GrowingShape>& growingShapes() {
    static const std::vector<GrowingShape> shapes = {
        {"LeftDeepSum", "", "1+", "1", "", "", 1000000, true},
        {"Parentheses", "", "(", "1", ")", "", 100000, false},
        {"Sqrt", "", "SQRT(", "1", ")", "", 100000, true},
        {"UnaryMinus", "", "-(", "1", ")", "", 100000, true},
        {"IfInThenBranch", "", "IF(1;", "2", ")", "", 100000, true},
        {"IfInComparedCondition", "", "IF(", "1", ">0;1;0)", "", 100000, true},
        {"LeftInLeft", "", "LEFT(", "\"abc\"", ";2)", "", 100000, true},
        {"LogInBase", "", "LOG(2;", "2", ")", "", 100000, true},
        {"LogInValue", "", "LOG(", "2", ";2)", "", 100000, true},
        {"TextInValue", "", "TEXT(", "1", ";\"0.0\")", "", 100000, true},
        {"TextInFormat", "", "TEXT(1;", "\"0.0\"", ")", "", 100000, true},
        {"RadixRoundTrips", "", "BIN2DEC(DEC2BIN(", "1", "))", "", 100000, true},
        {"PowerChain", "", "1^", "1", "", "", 100000, true},
        {"RightNestedDivision", "", "1/(", "1", ")", "", 100000, true},
        {"Comparisons", "", "1<", "1", "", "", 100000, true},
        {"TextConcatenation", "", "\"a\"+", "\"a\"", "", "", 100000, true},
        {"Min", "MIN(", "1;", "1", "", ")", 100000, true},
        // LOG(100;b) stays between 2 and 7 for every base in that range,
        // LOG(x;1.2) draws x towards 14.7, and TEXT(0;"0.0") gives its own
        // format again, so no level of these meets an error.
        {"LogInBaseNoError", "", "LOG(100;", "10", ")", "", 100000, true},
        {"LogInValueNoError", "", "LOG(", "15", ";1.2)", "", 100000, true},
        {"TextInFormatNoError", "", "TEXT(0;", "\"0.0\"", ")", "", 100000, true},
    };
    return shapes;
}

std::string grownFormula(const GrowingShape& shape, int levels) {
    return "=" + std::string(shape.head) + repeated(shape.open, levels) + shape.innermost +
           repeated(shape.close, levels) + shape.tail;
}

std::string longMixedFormula(std::size_t bytes) {
    std::string text = "=input(\"rate\")";
    while (text.size() < bytes) {
        for (const std::string& formula : sheetFormulas()) {
            text += "+";
            text.append(formula, formula[0] == '=' ? 1 : 0, std::string::npos);
        }
    }
    return text;
}

std::string longReferenceList(std::size_t bytes) {
    const char* const markers[][2] = {{"", ""}, {"$", "$"}, {"", "$"}, {"$", ""}};
    std::string text = "=";
    for (int i = 0; text.size() < bytes; ++i) {
        const char* const* marker = markers[i % 4];
        const std::string name = BenchSheet::cellName(i % 30, i % 1000);
        const std::size_t digits = name.find_first_of("0123456789");
        if (i > 0) text += "+";
        text += marker[0] + name.substr(0, digits) + marker[1] + name.substr(digits);
    }
    return text;
}
