#include <algorithm>
#include <array>

#include "command.h"
#include "report.h"
#include "text.h"

using namespace kiri::tov;

namespace tool {

namespace {

/// For each code whether it is left out.
std::array<bool, codeCount> ignoredIn(QString const& names) {
    std::array<bool, codeCount> ignored{};
    for (QString const& name : names.split(',')) {
        auto const* const code = std::find_if(std::begin(codes), std::end(codes),
                                              [&](Code const& known) { return name == QLatin1String(known.name); });
        if (code == std::end(codes))
            throw Trouble("unknown code '" + name.toStdString() + "'; toveng(1) has the codes");
        ignored[static_cast<std::size_t>(code->kind - 1)] = true;
    }
    return ignored;
}

}  // namespace

int check(Arguments const& arguments) {
    auto const form = static_cast<Form>(arguments.choose("format", {"text", "json", "sarif"}));
    TovNameMatch const match = arguments.match();
    if (arguments.has("match") && !arguments.has("design")) throw Trouble("--match without --design");
    std::array<bool, codeCount> ignored{};
    if (arguments.has("ignore")) ignored = ignoredIn(toText(arguments.value("ignore")));
    bool isNumber = true;
    quint64 most = ~quint64{0};
    if (arguments.has("max")) most = toText(arguments.value("max")).toULongLong(&isNumber);
    if (!isNumber) throw Trouble("--max '" + arguments.value("max") + "' is no number");
    Design const* const design = arguments.has("design") ? &keep<Design>(arguments.value("design")) : nullptr;

    Report report(form, most);
    int suggestions = suggestionsAtMost;
    std::size_t failed = 0;
    std::vector<std::string> const files = arguments.words();
    for (std::string const& file : files) {
        try {
            Input const input(file, Content::constraints);
            forEachFinding(input, design, match, [&](auto const& finding, auto const& line, auto const& missing) {
                if (ignored[static_cast<std::size_t>(finding.kind - 1)]) return;
                report.add(file, finding, [&] {
                    std::string message;
                    for (TovNameUse const& use : missing) {
                        if (!message.empty()) message += "; ";
                        message += missingMessage(use.type, use.word, *design->names, suggestions);
                    }
                    return message.empty() ? messageOf(finding, line) : message;
                });
            });
        } catch (Trouble const& trouble) {
            complain(std::string("toveng: ") + trouble.what());
            ++failed;
        }
    }
    report.finish(failed == 0);
    if (failed < files.size()) complain("toveng: " + report.counts());
    if (failed > 0) return 2;
    return report.count() == 0 ? 0 : 1;
}

}  // namespace tool
