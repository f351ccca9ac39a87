#include <fstream>
#include <iterator>
#include <list>
#include <optional>
#include <set>

#include "command.h"
#include "set_check.h"
#include "text.h"

using namespace kiri::tov;

namespace tool {

namespace {

// Returns the codes in the lists of an option.
CodeSet codesIn(std::vector<std::string> const& lists) {
    CodeSet codes;
    for (std::string const& list : lists) {
        for (QString const& name : toText(list).split(',')) {
            Rule const* const rule = findRule(name.toStdString());
            if (rule == nullptr) throw Trouble("unknown code '" + name.toStdString() + "'; toveng(1) lists the codes");
            codes.set(rule->code, true);
        }
    }
    return codes;
}

CodeSet selectedCodes(Arguments const& arguments) {
    CodeSet codes = arguments.has("select") ? codesIn(arguments.values("select")) : CodeSet(true);
    CodeSet const ignored = codesIn(arguments.values("ignore"));
    if (ignored.has(Code::endsLoad))
        throw Trouble("ends-load cannot be ignored, because the lines after it are not read");
    for (Rule const& rule : rules) {
        if (ignored.has(rule.code)) codes.set(rule.code, false);
    }
    codes.set(Code::endsLoad, true);
    return codes;
}

std::size_t mostIn(Arguments const& arguments) {
    if (!arguments.has("max")) return ~std::size_t{0};
    bool isNumber = false;
    quint64 const most = toText(arguments.value("max")).toULongLong(&isNumber);
    if (!isNumber) throw Trouble("--max '" + arguments.value("max") + "' is not a number");
    return most;
}

Baseline readBaseline(std::string const& path) {
    Input const input(path, Content::any);
    std::ifstream file(input.path(), std::ios::binary);
    std::string const text{std::istreambuf_iterator<char>(file), {}};
    try {
        return Baseline(QByteArray::fromStdString(text));
    } catch (Trouble const& trouble) {
        throw Trouble(path + ": " + trouble.what());
    }
}

// "3 findings: 1 unknown-command, 2 lost-word".
std::string summary(CheckCounts const& counts, std::size_t count) {
    if (count == 0) return "no findings";
    std::string text = std::to_string(count) + (count == 1 ? " finding" : " findings");
    char const* joint = ": ";
    for (Rule const& rule : rules) {
        std::size_t const number = counts.of[indexOf(rule.code)];
        if (number > 0) text += std::exchange(joint, ", ") + std::to_string(number) + " " + rule.name;
    }
    return text;
}

/// Opens the files of a call and checks them, as one set or each by itself.
class Run {
public:
    Run(CheckOptions const& options, Report& report) : options_(options), report_(report) {}

    void check(std::vector<std::string> const& names, Design const* design, bool each) {
        std::vector<std::optional<Input>> inputs;
        std::uint64_t size = 0;
        for (std::string const& name : names) {
            inputs.push_back(open(name));
            if (inputs.back()) size += inputs.back()->size();
        }
        SlowProgress progress(size);
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            if (i == 0 || each) set_.emplace(options_, design, report_, counts_);
            inputs[i] ? set_->read(*inputs[i], progress) : set_->setCut();
            progress.clear();
            if (each || i + 1 == inputs.size()) set_->tell();
        }
    }

    CheckCounts const& counts() const { return counts_; }
    std::size_t opened() const { return opened_; }

private:
    std::optional<Input> open(std::string const& name) {
        try {
            Input input(name, Content::constraints);
            ++opened_;
            return input;
        } catch (Trouble const& trouble) {
            report_.addTrouble(trouble.what());
            return std::nullopt;
        }
    }

    CheckOptions const& options_;
    Report& report_;
    CheckCounts counts_;
    std::size_t opened_ = 0;
    std::optional<SetCheck> set_;
};

std::string baselineSummary(Baseline const& baseline, std::vector<std::string> const& names, CodeSet const& codes,
                            std::size_t leftOut) {
    std::set<std::string> files;
    for (std::string const& name : names) files.insert(toText(name).toStdString());
    return "; left out by the baseline: " + std::to_string(leftOut) +
           "; gone from it: " + std::to_string(baseline.gone(files, codes));
}

}  // namespace

int check(Arguments const& arguments) {
    auto const form = static_cast<Form>(arguments.choose("format", {"text", "json", "sarif"}));
    CheckOptions options;
    options.match = arguments.match();
    options.codes = selectedCodes(arguments);
    options.isFolded = !arguments.has("all");
    if (arguments.has("match") && !arguments.has("design")) throw Trouble("--match requires --design");
    auto const colors = static_cast<Colors>(arguments.choose("color", {"auto", "always", "never"}));
    Report report(form, mostIn(arguments), lookFor(stdout, colors));
    Run& run = keep<Run>(options, report);
    Baseline baseline;
    try {
        if (arguments.has("baseline")) {
            baseline = readBaseline(arguments.value("baseline"));
            options.baseline = &baseline;
        }
        Design const* const design = arguments.has("design") ? &keep<Design>(arguments.value("design")) : nullptr;
        run.check(arguments.words(), design, arguments.has("each"));
    } catch (Trouble const& trouble) {
        report.addTrouble(trouble.what());
    }
    report.finish();
    if (run.opened() > 0) {
        std::string text = summary(run.counts(), report.count());
        if (options.baseline != nullptr) {
            text += baselineSummary(baseline, arguments.words(), options.codes, run.counts().leftOut);
        }
        complain("toveng: " + text);
    }
    if (!report.isWhole()) return 2;
    return report.count() == 0 ? 0 : 1;
}

}  // namespace tool
