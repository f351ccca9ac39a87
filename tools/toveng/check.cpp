#include <algorithm>
#include <array>
#include <charconv>

#include "command.h"
#include "report.h"
#include "text.h"

using namespace kiri::tov;

namespace tool {

namespace {

std::size_t mostOf(Arguments const& arguments) {
    std::size_t most = static_cast<std::size_t>(-1);
    if (!arguments.has("max")) return most;
    std::string const text = arguments.value("max");
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), most);
    if (error != std::errc() || end != text.data() + text.size()) throw Trouble("--max '" + text + "' is no number");
    return most;
}

/// For each code whether it is left out.
std::array<bool, codeCount> ignoredIn(std::string const& list) {
    std::array<bool, codeCount> ignored{};
    for (std::size_t at = 0; at <= list.size();) {
        std::size_t const end = std::min(list.find(',', at), list.size());
        std::string const name = list.substr(at, end - at);
        auto const* const code =
            std::find_if(std::begin(codes), std::end(codes), [&](Code const& known) { return known.name == name; });
        if (code == std::end(codes)) throw Trouble("unknown code '" + name + "'; toveng(1) has the codes");
        ignored[static_cast<std::size_t>(code->kind - 1)] = true;
        at = end + 1;
    }
    return ignored;
}

}  // namespace

int check(Arguments const& arguments) {
    auto const form = static_cast<Form>(arguments.choose("format", {"text", "json", "sarif"}));
    TovNameMatch const match = arguments.match();
    if (arguments.has("match") && !arguments.has("design")) throw Trouble("--match without --design");
    std::array<bool, codeCount> const ignored =
        arguments.has("ignore") ? ignoredIn(arguments.value("ignore")) : std::array<bool, codeCount>{};
    std::size_t const most = mostOf(arguments);
    Design const* const design = arguments.has("design") ? &keep<Design>(arguments.value("design")) : nullptr;

    Report report(form, most);
    int suggestions = suggestionsAtMost;
    std::size_t failed = 0;
    std::vector<std::string> const files = arguments.words();
    for (std::string const& file : files) {
        try {
            Input const input(file, Content::constraints);
            forEachFinding(input, design, match, [&](TovFinding const& finding, Place const& place) {
                if (ignored[static_cast<std::size_t>(finding.kind - 1)]) return;
                report.add(file, finding, [&] {
                    std::string message;
                    for (TovNameUse const& use : place.missing) {
                        if (!message.empty()) message += "; ";
                        message += missingMessage(use.type, use.word, *design->names, suggestions);
                    }
                    return message.empty() ? messageOf(finding, place.line) : message;
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
