#include "call.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>

namespace tool::sdc {

namespace {

constexpr std::string_view decimalDigits = "0123456789";

/// Returns the length of the decimal number that a text begins with; 0 if there is none.
std::size_t numberSize(std::string_view text) {
    std::size_t at = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    auto const skipDigits = [&] {
        std::size_t const start = at;
        at = std::min(text.find_first_not_of(decimalDigits, at), text.size());
        return at - start;
    };
    std::size_t found = skipDigits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        found += skipDigits();
    }
    if (found == 0) return 0;
    std::size_t const mantissa = at;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
        if (skipDigits() == 0) return mantissa;
    }
    return at;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view space = " \t\n\v\f\r";
    std::size_t const first = std::min(text.find_first_not_of(space), text.size());
    return text.substr(first, text.find_last_not_of(space) + 1 - first);
}

class Reader {
public:
    Reader(Command command, TimeUnit const& unit, std::set<std::string> const& drop) : unit_(unit), drop_(drop) {
        call_.command = command;
    }

    Call read(int objc, Tcl_Obj* const objv[]) {
        for (int i = 1; i < objc; ++i) {
            std::string_view const word = isObject(objv[i]) ? std::string_view() : textOf(objv[i]);
            if (!isOptionWord(word)) {
                operands_.push_back(objv[i]);
                continue;
            }
            SdcOption const* const option = findOption(call_.command, word);
            if (option == nullptr) throw NotHeld{readable(word), "the command does not have this option in SDC"};
            if (option->takesValue && i + 1 == objc) throw NotHeld{option->name, "the option has no value"};
            take(*option, option->takesValue ? objv[++i] : nullptr);
        }
        takeOperands();
        checkRules();
        return std::move(call_);
    }

private:
    // The text of an object is a mark, with which no option begins.
    static bool isObject(Tcl_Obj* word) { return word->bytes == nullptr && word->typePtr != nullptr; }

    void take(SdcOption const& option, Tcl_Obj* value) {
        option_ = option.name;
        if (option.takesValue && option.becomes != Becomes::group && option.becomes != Becomes::nothing &&
            isSeen(option.becomes)) {
            throw NotHeld{option_, "the option is given twice"};
        }
        switch (option.becomes) {
            case Becomes::nothing:
                return;
            case Becomes::notHeld:
                if (!option.takesValue && drop_.count(option.name + 1) > 0) {
                    call_.dropped.emplace_back(option.name);
                    return;
                }
                throw NotHeld{option_, "this file format does not have it"};
            case Becomes::exclusive:
                return takeRelation(call_.exclusive, option.name);
            case Becomes::asynchronous:
                return takeRelation(call_.asynchronous, option.name);
            case Becomes::max:
                call_.max = true;
                return;
            case Becomes::min:
                call_.min = true;
                return;
            default:
                return takeValue(option.becomes, value);
        }
    }

    void takeValue(Becomes kind, Tcl_Obj* value) {
        switch (kind) {
            case Becomes::period:
                call_.period = timeOf(value);
                return;
            case Becomes::name:
                call_.name = nameOf(value);
                return;
            case Becomes::waveform:
                takeWaveform(value);
                return;
            case Becomes::divideBy:
                call_.divideBy = wholeOf(value);
                return;
            case Becomes::multiplyBy:
                call_.multiplyBy = wholeOf(value);
                return;
            case Becomes::dutyCycle:
                call_.dutyCycle = numberOf(value);
                return;
            case Becomes::source:
                call_.source = oneOf(value);
                return;
            case Becomes::masterClock:
                call_.masterClock = oneOf(value);
                return;
            case Becomes::group:
                call_.groups.push_back(objectsOf(value));
                return;
            case Becomes::clock:
                call_.clock = oneOf(value);
                return;
            case Becomes::from:
                call_.from = objectsOf(value);
                return;
            case Becomes::to:
                call_.to = objectsOf(value);
                return;
            case Becomes::through:
                call_.through = objectsOf(value);
                return;
            default:
                return;
        }
    }

    bool isSeen(Becomes kind) {
        unsigned const bit = 1U << static_cast<unsigned>(kind);
        bool const wasSeen = (seen_ & bit) != 0;
        seen_ |= bit;
        return wasSeen;
    }

    void takeOperands() {
        bool const isValued =
            (call_.command & (setInputDelay | setOutputDelay | setMaxDelay | setMinDelay | setMulticyclePath)) != 0;
        bool const hasTargets =
            (call_.command & (createClock | createGeneratedClock | setInputDelay | setOutputDelay)) != 0;
        std::size_t next = 0;
        if (isValued) {
            option_ = call_.command == setMulticyclePath ? "path_multiplier" : "delay_value";
            if (operands_.empty()) throw NotHeld{option_, "the value is missing"};
            call_.value = call_.command == setMulticyclePath ? wholeOf(operands_[0]) : timeOf(operands_[0]);
            ++next;
        }
        if (hasTargets && next < operands_.size()) {
            option_ = "objects";
            call_.targets = objectsOf(operands_[next++]);
        }
        if (next < operands_.size()) throw NotHeld{readable(textOf(operands_[next])), "SDC does not expect this word"};
    }

    void checkRules() const {
        switch (call_.command) {
            case createClock:
                if (!call_.period) throw NotHeld{"-period", "a clock needs a period"};
                if (call_.name.empty() && call_.targets.empty())
                    throw NotHeld{"-name", "a clock needs a name or an object"};
                if (call_.targets.size() > 1) throw NotHeld{"objects", "a clock of this format has one object"};
                return;
            case createGeneratedClock:
                if (call_.source.empty()) throw NotHeld{"-source", "a generated clock needs a source"};
                if (call_.targets.empty()) throw NotHeld{"objects", "a generated clock needs an object"};
                if (call_.targets.size() > 1) throw NotHeld{"objects", "a clock of this format has one object"};
                if (call_.divideBy && call_.multiplyBy)
                    throw NotHeld{"-multiply_by", "it cannot be combined with -divide_by"};
                return;
            case setClockGroups:
                if (call_.groups.empty()) throw NotHeld{"-group", "a clock group needs a group"};
                if (call_.exclusive == call_.asynchronous) {
                    throw NotHeld{"-asynchronous", "clock groups are either asynchronous or exclusive"};
                }
                return;
            case setInputDelay:
            case setOutputDelay:
                if (call_.targets.empty()) throw NotHeld{"objects", "a delay needs objects"};
                return;
            case setFalsePath:
                if (!call_.through.empty() && (!call_.from.empty() || !call_.to.empty())) {
                    throw NotHeld{"-through", "a save writes it only without -from and -to"};
                }
                return;
            default:
                return;
        }
    }

    void takeRelation(bool& relation, char const* name) {
        if (!relation_.empty() && relation_ != name) throw NotHeld{name, "it cannot be combined with " + relation_};
        relation_ = name;
        relation = true;
    }

    Number numberOf(Tcl_Obj* value) const {
        std::string const text = bytesOf(value);
        std::string const number(trimmed(text));
        if (number.empty() || numberSize(number) != number.size()) {
            throw NotHeld{option_, "`" + readable(textOf(value)) + "` is not a number"};
        }
        double const result = std::strtod(number.c_str(), nullptr);
        if (!std::isfinite(static_cast<float>(result))) throw NotHeld{option_, "`" + number + "` is too large"};
        return {number, result};
    }

    Number timeOf(Tcl_Obj* value) const {
        Number number = numberOf(value);
        if (unit_.divide == 0) throw NotHeld{option_, "the time unit is unknown"};
        number.value = number.value * unit_.multiply / unit_.divide;
        if (!std::isfinite(static_cast<float>(number.value))) {
            throw NotHeld{option_, "`" + number.text + "` is too large"};
        }
        return number;
    }

    Number wholeOf(Tcl_Obj* value) const {
        Number number = numberOf(value);
        constexpr double largest = 1U << 24U;  // exact in a 32-bit float
        if (number.value != std::trunc(number.value)) {
            throw NotHeld{option_, "`" + number.text + "` is not an integer"};
        }
        if (std::fabs(number.value) > largest) throw NotHeld{option_, "`" + number.text + "` is too large"};
        return number;
    }

    void takeWaveform(Tcl_Obj* value) {
        std::vector<Word> words;
        if (!appendWords(value, words)) throw NotHeld{option_, "the list is not closed"};
        for (Word const& word : words) {
            Value const text(newText(word.kind == Word::plain ? fromBytes(word.reference.name) : "reference"));
            call_.waveform.push_back(timeOf(text.get()));
        }
        if (words.empty() || words.size() % 2 != 0) throw NotHeld{option_, "a waveform must have pairs of edges"};
    }

    std::string nameOf(Tcl_Obj* value) const {
        std::vector<Word> words;
        if (!appendWords(value, words) || words.size() != 1 || words[0].kind != Word::plain) {
            throw NotHeld{option_, "`" + readable(textOf(value)) + "` is not a name"};
        }
        return words[0].reference.name;
    }

    std::vector<Object> objectsOf(Tcl_Obj* value) const {
        std::vector<Word> words;
        if (!appendWords(value, words)) throw NotHeld{option_, "the list is not closed"};
        std::vector<Object> objects;
        objects.reserve(words.size());
        for (Word& word : words) append(word, objects);
        if (objects.empty()) throw NotHeld{option_, "the list is empty"};
        return objects;
    }

    void append(Word& word, std::vector<Object>& objects) const {
        switch (word.kind) {
            case Word::plain:
            case Word::object:
                objects.push_back(std::move(word.reference));
                return;
            case Word::broken:
                throw NotHeld{option_, "a word combines an object with other text"};
            case Word::extent:
                if (!word.unknown->option.empty()) {
                    throw NotHeld{word.unknown->option, "queries of this format do not have it: " + word.unknown->text};
                }
                if (word.unknown->objects.empty()) {
                    throw NotHeld{option_, "no line can name the result of " + word.unknown->text};
                }
                objects.insert(objects.end(), word.unknown->objects.begin(), word.unknown->objects.end());
                return;
        }
    }

    std::vector<Object> oneOf(Tcl_Obj* value) const {
        std::vector<Object> objects = objectsOf(value);
        if (objects.size() > 1) throw NotHeld{option_, "this format allows only one object here"};
        return objects;
    }

    TimeUnit const& unit_;
    std::set<std::string> const& drop_;
    Call call_;
    std::string option_;  // the current option
    std::string relation_;
    unsigned seen_ = 0;  // a bit for each kind of value
    std::vector<Tcl_Obj*> operands_;
};

}  // namespace

std::optional<TimeUnit> timeUnitOf(std::string_view text) {
    struct Unit {
        std::string_view name;
        double multiply, divide;
    };
    constexpr Unit units[] = {{"fs", 1, 1e6}, {"ps", 1, 1e3}, {"ns", 1, 1},
                              {"us", 1e3, 1}, {"ms", 1e6, 1}, {"s", 1e9, 1}};
    text = trimmed(text);
    std::size_t const size = numberSize(text);
    double const number = size == 0 ? 1 : std::strtod(std::string(text.substr(0, size)).c_str(), nullptr);
    std::string_view const name = trimmed(text.substr(size));
    auto const unit =
        std::find_if(std::begin(units), std::end(units), [&](Unit const& known) { return known.name == name; });
    if (unit == std::end(units) || !(number > 0) || !std::isfinite(number)) return {};
    return TimeUnit{std::string(text), number * unit->multiply, unit->divide};
}

Call readCall(Command command, int objc, Tcl_Obj* const objv[], TimeUnit const& unit,
              std::set<std::string> const& drop) {
    return Reader(command, unit, drop).read(objc, objv);
}

}  // namespace tool::sdc
