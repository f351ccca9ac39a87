#pragma once
#if __has_include("../report.h")
#include "../report.h"
#else
#include <QJsonObject>
#include <cstdio>
#include <string>

#include "../text.h"
namespace tool {
struct Told {
    std::string file;
    std::size_t line;
    std::string code, text, message;
    std::size_t count = 1;
};
struct Look {};
enum class Form : std::size_t { text, json, sarif };
inline void printFinding(std::FILE* out, Told const& f) {
    std::fprintf(out, "%s:%zu: warning: %s [%s]\n", printable(f.file).c_str(), f.line, printable(f.message).c_str(),
                 f.code.c_str());
}
class Report {
public:
    Report(Form form, std::size_t, Look) : form_(form) {
        if (form_ == Form::json) print("{\"findings\": [");
    }
    void add(Told const& f) {
        QJsonObject o{{"file", toText(f.file)},
                      {"line", qint64(f.line)},
                      {"code", f.code.c_str()},
                      {"text", toText(f.text)},
                      {"message", toText(f.message)}};
        if (f.count > 1) o["count"] = qint64(f.count);
        print(n_++ ? ",\n" : "\n");
        print(o);
    }
    void finish() {
        if (form_ == Form::json) print("\n]}\n");
        flushOutput();
    }
    Form form_;
    int n_ = 0;
};
}  // namespace tool
#endif
