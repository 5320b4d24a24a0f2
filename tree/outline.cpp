#include <locale>
#include <vector>

#include "logic.h"
#include "program.h"
#include "rules.h"
#include "treewalks.h"
#include "variable.h"

namespace cellformula {

namespace {

// A number as the stream's settings write it, but always with the classic
// locale's point and no grouping, whatever locale the host's stream carries.
void writeNumber(std::stringstream& stream, double value) {
    std::ostringstream number;
    number.copyfmt(stream);
    number.imbue(std::locale::classic());
    number << value;
    stream << number.str();
}

struct Pending {
    const ASTNode* node;
    Operation operation;
    unsigned int depth;
};

// Writes one node's line and queues its operands, last first.
void writeLine(const Pending& at, std::stringstream& stream, std::vector<Pending>& pending) {
    stream << std::string(2 * static_cast<std::size_t>(at.depth), ' ');
    const unsigned int below = at.depth + 1;
    auto queue = [&](std::initializer_list<const ASTNode*> operands) {
        for (auto it = std::rbegin(operands); it != std::rend(operands); ++it) {
            if (*it != nullptr) pending.push_back(Pending{*it, operationOf(**it), below});
        }
    };
    switch (at.operation) {
        case Operation::Constant:
            writeNumber(stream, static_cast<const CNConstant&>(*at.node).f64Value);
            break;
        case Operation::Pi:
            writeNumber(stream, 3.141592653589793);
            break;
        case Operation::StringConstant:
            stream << static_cast<const CNStringConstant&>(*at.node).oValue;
            break;
        case Operation::Variable: {
            const VariableRecord& record = static_cast<const CNVariable&>(*at.node).oRecord;
            if (record.u32Type == ExprNumber) {
                writeNumber(stream, record.pf64Value != nullptr ? *record.pf64Value : 0.0);
            } else if (record.poText != nullptr) {
                stream << *record.poText;
            }
            break;
        }
        case Operation::If: {
            const auto& node = static_cast<const CNIf&>(*at.node);
            stream << "IF condition";
            queue({node.poCondition, node.poThen, node.poElse});
            break;
        }
        default:
            if (rulesOf(at.operation).shape == Shape::One) {
                const auto& node = static_cast<const CNSingleChildNode&>(*at.node);
                stream << node.oName;
                queue({node.poChild});
            } else {
                const auto& node = static_cast<const CNManyChildrenNode&>(*at.node);
                stream << node.oName;
                queue({node.poLeft, node.poRight});
                for (auto it = node.oChildren.rbegin(); it != node.oChildren.rend(); ++it) {
                    if (*it != nullptr) pending.push_back(Pending{*it, operationOf(**it), below});
                }
            }
            break;
    }
    stream << std::endl;
}

}  // namespace

void printOutline(const ASTNode& root, Operation operation, std::stringstream& stream, unsigned int depth) {
    std::vector<Pending> pending{Pending{&root, operation, depth}};
    while (!pending.empty()) {
        const Pending at = pending.back();
        pending.pop_back();
        // A host's node prints itself and what lies below it.
        if (at.operation == Operation::Host) {
            at.node->vPrintNode(stream, at.depth);
            continue;
        }
        writeLine(at, stream, pending);
    }
}

}  // namespace cellformula
