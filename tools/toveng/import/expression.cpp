#include "expression.h"

#include <tcl.h>

#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "loops.h"
#include "references.h"
#include "run.h"

namespace tool::sdc {

namespace {

/// Evaluates an expression as Tcl does, operator by operator.
class Expression {
public:
    explicit Expression(Run& run) : run_(run), interp_(run.interp()) {}

    /// Stores the value, or an error, as the result of the interpreter.
    int compute(Tcl_Obj* text) {
        std::string_view const view = textOf(text);
        if (holdsExtent(view)) look(view);
        Tcl_Parse parse{};
        int const size = static_cast<int>(view.size());
        if (Tcl_ParseExpr(interp_, view.data(), size, &parse) != TCL_OK) return TCL_ERROR;
        int const status = computeToken(parse.tokenPtr);
        Tcl_FreeParse(&parse);
        return status;
    }

    int computeCondition(Tcl_Obj* text, bool& holds) {
        int const status = compute(text);
        return status == TCL_OK ? truth(holds) : status;
    }

private:
    [[noreturn]] void look(std::string_view text) { run_.look("an expression looks into " + readable(text)); }

    int truth(bool& holds) {
        Value const value(Tcl_GetObjResult(interp_));
        int truth = 0;
        if (Tcl_GetBooleanFromObj(nullptr, value.get(), &truth) != TCL_OK) {
            double number = 0;
            if (Tcl_GetDoubleFromObj(nullptr, value.get(), &number) != TCL_OK) {
                return Tcl_GetBooleanFromObj(interp_, value.get(), &truth);
            }
            truth = number != 0 ? 1 : 0;
        }
        holds = truth != 0;
        return TCL_OK;
    }

    int computeToken(Tcl_Token* token) {
        Tcl_Token* const first = token + 1;
        if (token->type == TCL_TOKEN_SUB_EXPR && first->type == TCL_TOKEN_OPERATOR) return computeOperator(token);
        if (token->type == TCL_TOKEN_SUB_EXPR && first->type == TCL_TOKEN_SUB_EXPR) return computeToken(first);
        if (token->type == TCL_TOKEN_SUB_EXPR && first->type == TCL_TOKEN_WORD) {
            return computeOperand(first + 1, first->numComponents);
        }
        return computeOperand(first, token->numComponents);
    }

    int computeOperand(Tcl_Token* token, int count) {
        int const status = Tcl_EvalTokensStandard(interp_, token, count);
        if (status != TCL_OK) return status;
        std::string_view const text = textOf(Tcl_GetObjResult(interp_));
        if (holdsExtent(text)) look(text);
        return TCL_OK;
    }

    static std::vector<Tcl_Token*> operandsOf(Tcl_Token* token) {
        std::vector<Tcl_Token*> operands;
        Tcl_Token* const end = token + token->numComponents + 1;
        for (Tcl_Token* operand = token + 2; operand < end; operand += operand->numComponents + 1) {
            operands.push_back(operand);
        }
        return operands;
    }

    int computeOperator(Tcl_Token* token) {
        std::string_view const name(token[1].start, static_cast<std::size_t>(token[1].size));
        std::vector<Tcl_Token*> const operands = operandsOf(token);
        if (name == "&&" || name == "||") return computeLogic(operands, name == "||");
        if (name == "?") {
            bool holds = false;
            int const status = computeToken(operands[0]);
            if (status != TCL_OK) return status;
            if (truth(holds) != TCL_OK) return TCL_ERROR;
            return computeToken(operands[holds ? 1 : 2]);
        }
        bool const isWord = std::isalpha(static_cast<unsigned char>(name[0])) != 0 || name[0] == '_' || name[0] == ':';
        bool const isFunction = isWord && name != "eq" && name != "ne" && name != "in" && name != "ni";
        std::vector<Value> words;
        words.reserve(operands.size() + 1);
        words.emplace_back(newText((isFunction ? "::tcl::mathfunc::" : "::tcl::mathop::") + std::string(name)));
        for (Tcl_Token* operand : operands) {
            int const status = computeToken(operand);
            if (status != TCL_OK) return status;
            words.emplace_back(Tcl_GetObjResult(interp_));
        }
        std::vector<Tcl_Obj*> objv;
        objv.reserve(words.size());
        for (Value const& word : words) objv.push_back(word.get());
        return Tcl_EvalObjv(interp_, static_cast<int>(objv.size()), objv.data(), 0);
    }

    /// Evaluates "&&", or "||" if `decisive` is true: the first operand with that value decides.
    int computeLogic(std::vector<Tcl_Token*> const& operands, bool decisive) {
        bool holds = false;
        for (Tcl_Token* operand : operands) {
            int const status = computeToken(operand);
            if (status != TCL_OK) return status;
            if (truth(holds) != TCL_OK) return TCL_ERROR;
            if (holds == decisive) break;
        }
        Tcl_SetObjResult(interp_, Tcl_NewIntObj(holds ? 1 : 0));
        return TCL_OK;
    }

    Run& run_;
    Tcl_Interp* interp_;
};

int failure(Tcl_Interp* interp, char const* message) {
    Tcl_SetObjResult(interp, Tcl_NewStringObj(message, -1));
    return TCL_ERROR;
}

int originalOf(ClientData data, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) {
    auto const* replaced = static_cast<Replaced const*>(data);
    return replaced->original.objProc(replaced->original.objClientData, interp, objc, objv);
}

Run& runOf(ClientData data) {
    return *static_cast<Replaced const*>(data)->run;
}

int exprCommand(ClientData data, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) noexcept {
    if (objc < 2 || isLookingOn()) return originalOf(data, interp, objc, objv);
    Value const text(objc == 2 ? objv[1] : Tcl_ConcatObj(objc - 1, objv + 1));
    return Expression(runOf(data)).compute(text.get());
}

int ifCommand(ClientData data, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) noexcept {
    if (isLookingOn()) return originalOf(data, interp, objc, objv);
    int i = 1;
    for (;;) {
        bool holds = false;
        if (i >= objc) return failure(interp, "wrong # args: no expression after \"if\" argument");
        int const status = Expression(runOf(data)).computeCondition(objv[i++], holds);
        if (status != TCL_OK) return status;
        if (i < objc && textOf(objv[i]) == "then") ++i;
        if (i >= objc) return failure(interp, "wrong # args: no script following \"if\" argument");
        if (holds) return Tcl_EvalObjEx(interp, objv[i], 0);
        if (++i >= objc) break;
        if (textOf(objv[i]) == "elseif") {
            ++i;
            continue;
        }
        if (textOf(objv[i]) == "else") ++i;
        if (i + 1 != objc) return failure(interp, "wrong # args: extra words after \"else\" clause in \"if\" command");
        return Tcl_EvalObjEx(interp, objv[i], 0);
    }
    Tcl_ResetResult(interp);
    return TCL_OK;
}

/// Runs a loop while a condition holds.
int loopWhile(Run& run, Tcl_Obj* condition, Tcl_Obj* body, Tcl_Obj* next) {
    for (;;) {
        bool holds = false;
        int status = Expression(run).computeCondition(condition, holds);
        if (status != TCL_OK) return status;
        if (!holds) break;
        status = Tcl_EvalObjEx(run.interp(), body, 0);
        if (status == TCL_BREAK) break;
        if (status != TCL_OK && status != TCL_CONTINUE) return status;
        status = next == nullptr ? TCL_OK : Tcl_EvalObjEx(run.interp(), next, 0);
        if (status == TCL_BREAK) break;
        if (status != TCL_OK) return status;
    }
    Tcl_ResetResult(run.interp());
    return TCL_OK;
}

int whileCommand(ClientData data, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) noexcept {
    if (objc != 3 || isLookingOn()) return originalOf(data, interp, objc, objv);
    return loopWhile(runOf(data), objv[1], objv[2], nullptr);
}

int forCommand(ClientData data, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) noexcept {
    if (objc != 5 || isLookingOn()) return originalOf(data, interp, objc, objv);
    int const status = Tcl_EvalObjEx(interp, objv[1], 0);
    return status == TCL_OK ? loopWhile(runOf(data), objv[2], objv[4], objv[3]) : status;
}

}  // namespace

void replaceExpressions(Run& run) {
    replaceCommand(run, "::expr", exprCommand);
    replaceCommand(run, "::if", ifCommand);
    replaceCommand(run, "::while", whileCommand);
    replaceCommand(run, "::for", forCommand);
}

}  // namespace tool::sdc
