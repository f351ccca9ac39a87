#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <unordered_set>

#include "call.h"
#include "tov/check.h"
#include "tov/cmd/commands.h"

using namespace kiri::tov;

namespace tool::sdc {

namespace {

constexpr std::size_t linesAtMost = 100'000;

bool isWordCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// Returns whether the brackets of a word are indexes of bits, which Tcl leaves as they are: "d[3]", "d[7:0]", "d[*]".
bool hasOnlyBits(std::string_view word) {
    for (std::size_t i = word.find('['); i != std::string_view::npos; i = word.find('[', i + 1)) {
        std::size_t const end = word.find(']', i);
        if (end == std::string_view::npos) return false;
        std::string_view const index = word.substr(i + 1, end - i - 1);
        bool const isNumber = !index.empty() && index.find_first_not_of("0123456789:") == std::string_view::npos &&
                              index.front() != ':' && index.back() != ':' &&
                              std::count(index.begin(), index.end(), ':') <= 1;
        if (!isNumber && index != "*") return false;
    }
    return std::count(word.begin(), word.end(), '[') == std::count(word.begin(), word.end(), ']');
}

/// Returns whether Tcl reads a word as something else unless it is in braces.
bool needsBraces(std::string_view word) {
    return word.find_first_of("$;\"\\{}") != std::string_view::npos || !hasOnlyBits(word);
}

/// Returns whether a line is certain to keep a word, so no check is needed.
bool isPlain(std::string_view word) {
    if (word.empty() || !hasOnlyBits(word)) return false;
    char const first = word[0];
    if (!isWordCharacter(first) && first != '*' && first != '/') return false;
    return std::all_of(word.begin(), word.end(), [](char c) {
        return isWordCharacter(c) || std::string_view("/.*?:[]-").find(c) != std::string_view::npos;
    });
}

/// Creates the lines of a call.
class Writer {
public:
    Writer(Call const& call, std::vector<std::string>& rounded) : call_(call), rounded_(rounded) {}

    std::string write() {
        switch (call_.command) {
            case createClock:
                writeClock();
                break;
            case createGeneratedClock:
                writeGeneratedClock();
                break;
            case setClockGroups:
                writeGroups();
                break;
            case setInputDelay:
                writeIoDelay<TovCmdInputDelay>();
                break;
            case setOutputDelay:
                writeIoDelay<TovCmdOutputDelay>();
                break;
            case setMaxDelay:
                writePaths<TovCmdMaxDelay>(number(*call_.value, "delay_value"));
                break;
            case setMinDelay:
                writePaths<TovCmdMinDelay>(number(*call_.value, "delay_value"));
                break;
            case setFalsePath:
                if (call_.through.empty())
                    writePaths<TovCmdFalsePath>(nullptr);
                else
                    writeThrough();
                break;
            case setMulticyclePath:
                writePaths<TovCmdMultiPath>(static_cast<int>(call_.value->value));
                break;
        }
        return std::move(lines_);
    }

private:
    void writeClock() {
        TovCmdClockDef cmd(number(*call_.period, "-period"), name(), nullptr);
        for (Number const& edge : call_.waveform) cmd.waveform.push_back(number(edge, "-waveform"));
        add(cmd.targets, call_.targets, "objects");
        append(cmd);
    }

    void writeGeneratedClock() {
        TovCmdGenClockDef cmd(name(), nullptr);
        if (call_.divideBy) cmd.divideBy = std::to_string(static_cast<int>(call_.divideBy->value));
        if (call_.multiplyBy) cmd.multiplyBy = std::to_string(static_cast<int>(call_.multiplyBy->value));
        if (call_.dutyCycle) cmd.dutyCycle = decimal(number(*call_.dutyCycle, "-duty_cycle"));
        add(cmd.sources, call_.source, "-source");
        add(cmd.masterClock, call_.masterClock, "-master_clock");
        add(cmd.targets, call_.targets, "objects");
        append(cmd);
    }

    void writeGroups() {
        TovCmdClockGroupDef cmd(call_.exclusive);
        for (std::vector<Object> const& group : call_.groups) {
            cmd.groups.push_back(new ppStlList<taDciObj*>);
            for (Object const& clock : eachOnce(group)) {
                if (clock.type != taDciObjName && clock.type != taDciObjClock) {
                    throw NotHeld{"-group", "`" + clock.name + "` is not a clock"};
                }
                if (needsBraces(clock.name)) throw NotHeld{"-group", "`" + clock.name + "` would need braces"};
                add(*cmd.groups.back(), {taDciObjClock, clock.name}, "-group");
            }
        }
        append(cmd);
    }

    template <class Cmd>
    void writeIoDelay() {
        Cmd cmd(number(*call_.value, "delay_value"), nullptr, nullptr);
        cmd.max = call_.max;
        cmd.min = call_.min;
        add(cmd.clock, call_.clock, "-clock");
        for (Object const& object : eachOnce(call_.targets)) {
            freeDciObjList(cmd.objects);
            add(cmd.objects, object, "objects");
            append(cmd);
        }
    }

    /// One line for each pair of a start and an end point; if one list is empty, for each object of the other.
    template <class Cmd, class First>
    void writePaths(First first) {
        std::unique_ptr<Cmd> const cmd = makePath<Cmd>(first);
        std::vector<Object> const from = eachOnce(call_.from), to = eachOnce(call_.to);
        if (from.size() * to.size() > linesAtMost) throw NotHeld{"-to", "the call would take more than 100,000 lines"};
        for (std::size_t i = 0; i < std::max<std::size_t>(from.size(), 1); ++i) {
            freeDciObjList(cmd->from);
            if (!from.empty()) add(cmd->from, from[i], "-from");
            for (std::size_t k = 0; k < std::max<std::size_t>(to.size(), 1); ++k) {
                freeDciObjList(cmd->to);
                if (!to.empty()) add(cmd->to, to[k], "-to");
                append(*cmd);
            }
        }
    }

    template <class Cmd, class First>
    static std::unique_ptr<Cmd> makePath(First first) {
        if constexpr (std::is_same_v<Cmd, TovCmdFalsePath>)
            return std::make_unique<Cmd>(first);
        else
            return std::make_unique<Cmd>(first, nullptr);
    }

    void writeThrough() {
        TovCmdFalsePath cmd(nullptr);
        for (Object const& object : eachOnce(call_.through)) {
            freeDciObjList(cmd.through);
            add(cmd.through, object, "-through");
            append(cmd);
        }
    }

    char const* name() {
        if (call_.name.empty()) return nullptr;
        if (needsBraces(call_.name)) throw NotHeld{"-name", "`" + call_.name + "` would need braces"};
        inspect(call_.name, "-name");
        return call_.name.c_str();
    }

    static std::string decimal(float value) {
        char text[64];
        std::snprintf(text, sizeof text, "%f", static_cast<double>(value));
        return text;
    }

    /// Returns a number as the format holds it.
    float number(Number const& number, char const* option) {
        auto const held = static_cast<float>(number.value);
        // For numbers from 1 on, six decimals are exact enough.
        if (number.value == 0 || std::fabs(number.value) >= 1) return held;
        double const written = std::strtod(decimal(held).c_str(), nullptr);
        if (written == 0 && number.value != 0) throw NotHeld{option, "`" + number.text + "` would be written as 0"};
        constexpr double millionth = 1e-6;
        if (std::fabs(written - number.value) > std::fabs(number.value) * millionth) rounded_.push_back(number.text);
        return held;
    }

    static std::vector<Object> eachOnce(std::vector<Object> const& objects) {
        if (objects.size() < 2) return objects;
        if (objects.size() > linesAtMost) throw NotHeld{"objects", "the call would take more than 100,000 lines"};
        std::vector<Object> once;
        std::unordered_set<std::string> seen;
        for (Object const& object : objects) {
            if (seen.insert(std::to_string(object.type) + object.name).second) once.push_back(object);
        }
        return once;
    }

    void inspect(std::string const& word, char const* option) {
        if (isPlain(word)) return;
        isChecked_ = true;
        std::string reserved;
        bool const escapesBrace = word.find("\\{") != std::string::npos || word.find("\\}") != std::string::npos;
        bool const hasNul = word.find('\0') != std::string::npos;
        if (word.back() == '\\' || escapesBrace || hasNul || word[0] == '"' ||
            TovCmd::reservedKey(word.c_str(), reserved)) {
            throw NotHeld{option, "the format cannot hold the name `" + word + "`"};
        }
    }

    void add(ppStlList<taDciObj*>& list, Object const& object, char const* option) {
        bool const isQueryText = object.type == taDciObjName && object.name[0] == '[' && object.name.back() == ']';
        if (!isQueryText) inspect(object.name, option);
        std::string name = object.name;
        taDciObjTyp type = object.type;
        if (type == taDciObjName && !isQueryText) {
            // The format may also read a plain word as a number or a keyword.
            if (!std::isalpha(static_cast<unsigned char>(name[0]))) isChecked_ = true;
            if (name.compare(0, 4, "get_") == 0) isChecked_ = true;
            if (needsBraces(name)) name = "{" + name + "}";
        }
        if (type == registerType) {
            name = "[ get_registers { " + name + " } ]";
            type = taDciObjName;
        }
        list.push_back(new taDciObj(name.c_str(), nullptr, type, taDciObjNone));
    }

    void add(ppStlList<taDciObj*>& list, std::vector<Object> const& objects, char const* option) {
        for (Object const& object : objects) add(list, object, option);
    }

    template <class Cmd>
    void append(Cmd& cmd) {
        std::size_t const start = lines_.size();
        cmd.appendSaveString(lines_);
        if (isChecked_) {
            std::string const line = lines_.substr(start);
            std::vector<TovFinding> const findings = checkTovLine(line);
            bool const isLine = line.find_first_of(std::string_view("\n\0", 2)) == std::string::npos;
            if (!findings.empty() || !isLine) {
                throw NotHeld{"objects",
                              findings.empty() ? "a line would not preserve it" : findingReason(findings.front())};
            }
        }
        lines_ += '\n';
    }

    static std::string findingReason(TovFinding const& finding) {
        return std::string("a line would not preserve it (") + findingCode(finding.kind) + ")";
    }

    Call const& call_;
    std::vector<std::string>& rounded_;
    std::string lines_;
    bool isChecked_ = false;
};

}  // namespace

std::string linesOf(Call const& call, std::vector<std::string>& rounded) {
    return Writer(call, rounded).write();
}

}  // namespace tool::sdc
