#include <QString>
#include <cmath>
#include <fstream>

#include "../command.h"
#include "../input.h"
#include "../report.h"
#include "../text.h"
#include "child.h"
#include "output_file.h"
#include "result.h"
#include "run.h"
#include "sdc_options.h"
#include "source_file.h"

namespace tool {

namespace {

std::string workingDirectory() {
    std::string const path = sdc::realPath(".");
    return path.empty() ? "/" : path;
}

sdc::SourceFile readFile(std::string const& name) {
    Input const input(name, Content::constraints);
    std::ifstream file(input.path(), std::ios::binary);
    file.seekg(0, std::ios::end);
    std::string text(file ? static_cast<std::size_t>(file.tellg()) : 0, '\0');
    file.seekg(0);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file) throw Trouble(name + ": cannot be read");
    std::string path = name == "-" ? std::string() : sdc::realPath(name);
    if (path.empty()) path = workingDirectory() + "/" + name;
    return {name, path, sdc::normalised(std::move(text))};
}

std::string folderOf(std::string const& path) {
    std::size_t const slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

double readLimit(std::string const& text) {
    bool isNumber = false;
    double const seconds = QString::fromLatin1(text.c_str()).toDouble(&isNumber);
    if (!isNumber || !(seconds > 0) || !std::isfinite(seconds)) {
        throw Trouble("--limit '" + text + "' is not a number of seconds");
    }
    return seconds;
}

std::vector<std::pair<std::string, std::string>> readDefines(std::vector<std::string> const& texts) {
    std::vector<std::pair<std::string, std::string>> defines;
    for (std::string const& text : texts) {
        std::size_t const equals = text.find('=');
        if (equals == std::string::npos || equals == 0) throw Trouble("--define '" + text + "' is not NAME=VALUE");
        defines.emplace_back(text.substr(0, equals), text.substr(equals + 1));
    }
    return defines;
}

std::set<std::string> readDrop(std::vector<std::string> const& texts) {
    std::set<std::string> drop;
    for (std::string const& text : texts) {
        for (QString const& option : QString::fromLatin1(text.c_str()).split(',')) {
            std::string const name = option.toLatin1().toStdString();
            if (!sdc::isDroppable(name)) throw Trouble("--drop '" + name + "' is not an option that can be dropped");
            drop.insert(name);
        }
    }
    return drop;
}

sdc::Request readRequest(Arguments const& arguments) {
    sdc::Request request;
    request.defines = readDefines(arguments.values("define"));
    request.drop = readDrop(arguments.values("drop"));
    if (arguments.has("limit")) request.limit = readLimit(arguments.value("limit"));
    if (arguments.has("time-unit")) {
        std::string const text = arguments.value("time-unit");
        std::optional<sdc::TimeUnit> unit = sdc::timeUnitOf(text);
        if (!unit) throw Trouble("--time-unit '" + text + "' is not a unit of time, such as ns or 10ps");
        request.unit = *unit;
    }
    for (std::string const& name : arguments.words()) request.files.push_back(readFile(name));
    if (arguments.has("root")) {
        std::string const root = sdc::realPath(arguments.value("root"));
        if (root.empty()) throw Trouble("--root '" + arguments.value("root") + "' is not a folder");
        request.roots.push_back(root);
    } else {
        for (sdc::SourceFile const& file : request.files) request.roots.push_back(folderOf(file.path));
    }
    return request;
}

std::string counted(std::size_t count, std::string const& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// "time unit ns, 12 calls, 20 lines written, 3 calls kept as comments: 2 -add_delay, 1 -setup".
std::string sumOf(sdc::Result const& result) {
    std::size_t kept = 0;
    std::string options;
    for (auto const& [option, count] : result.keptByOption()) {
        kept += count;
        options += (options.empty() ? ": " : ", ") + std::to_string(count) + " " + option;
    }
    return "time unit " + result.unit() + ", " + counted(result.calls(), "call") + ", " +
           counted(result.lines(), "line") + " written, " + counted(kept, "call") +
           (kept == 1 ? " kept as a comment" : " kept as comments") + options;
}

bool isFailure(sdc::Code code) {
    return code != sdc::Code::rounded && code != sdc::Code::otherCommand;
}

Told toldOf(sdc::Result const& result, sdc::ImportFinding const& finding) {
    Told told;
    told.file = result.textOf(finding.file);
    told.line = finding.line;
    told.code = sdc::codeNames[static_cast<std::size_t>(finding.code)];
    told.text = result.textOf(finding.text);
    told.message = result.textOf(finding.message);
    told.count = finding.count;
    if (finding.count > 1) told.message += " (" + std::to_string(finding.count) + " times)";
    return told;
}

void printFindings(sdc::Result const& result, bool isJson) {
    Report report(isJson ? Form::json : Form::text, ~std::size_t{0}, {});
    for (sdc::ImportFinding const& finding : result.findings()) {
        if (isJson)
            report.add(toldOf(result, finding));
        else
            printFinding(stderr, toldOf(result, finding));
    }
    if (isJson) report.finish();
}

}  // namespace

int import(Arguments const& arguments) {
    bool const isJson = arguments.choose("format", {"text", "json"}) == 1;
    bool const hasOut = arguments.has("o") && arguments.value("o") != "-";
    if (isJson && !hasOut) throw Trouble("--format json requires -o, because the findings go to standard output");
    sdc::Request const request = readRequest(arguments);
    sdc::Result result(request.unit.name);
    sdc::runInChild(request, result);
    result.finish();
    if (hasOut) {
        std::string error;
        if (!sdc::writeWhole(arguments.value("o"), result.text(), error))
            throw Trouble(arguments.value("o") + ": " + error);
    } else {
        print(result.text());
        flushOutput();
    }
    printFindings(result, isJson);
    complain("toveng: " + sumOf(result));
    for (sdc::ImportFinding const& finding : result.findings()) {
        if (isFailure(finding.code)) return 1;
    }
    return 0;
}

}  // namespace tool
