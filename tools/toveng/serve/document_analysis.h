#pragma once

#include <QByteArray>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "analysis/judge.h"
#include "analysis/set_message.h"
#include "analysis/statement_set.h"
#include "serve/document.h"

namespace tool::lsp {

/// A file of the set that a document belongs to.
struct FileText {
    std::string name;
    std::vector<std::string> const* lines;
};

/// What a document is judged by.
struct Rules {
    kiri::tov::TovDesignNames const* names = nullptr;
    bool isDesignPending = false;  ///< a design is set and not there: nothing is said of names
    kiri::tov::TovNameMatch match = kiri::tov::TOVMATCH_LEVELS;
    CodeSet codes{true};
    std::vector<FileText> filesBefore;  ///< of the set, before the document
    std::vector<FileText> filesAfter;
    std::string documentName;
    NearNames::Search nearest;  ///< in the design; empty without one
};

/// A finding of a document.
struct Problem {
    std::size_t line;  ///< counted from 0
    Code code;
    std::string text;
    std::string message;               ///< UTF-8
    std::vector<MissingWord> words{};  ///< that stand for nothing: of undefined-clock and missing-name
};

/// What is found in a document, kept while it is edited: an edit judges again only what it may change. The text and
/// what the rules refer to must outlive it.
class DocumentAnalysis {
public:
    DocumentAnalysis(Text const& text, Rules rules);

    /// Takes an edit of the text, after it was made.
    void apply(Splice const& splice);

    using Visitor = std::function<void(Problem const& problem)>;
    /// Calls `visit` with each finding, in the order of the lines and, in one line, of the codes.
    void forEachProblem(Visitor const& visit);

    /// Returns the statement that a line belongs to; null after a line that ends the load.
    Statement const* statementAt(std::size_t line) const;
    /// Returns the findings of the statement that a line belongs to.
    std::vector<Problem> problemsAt(std::size_t line);
    /// Returns the near name for a word that stands for nothing; empty if there is none.
    std::string nearestTo(MissingWord const& word) const {
        return NearNames(set_.clocks(), rules_.nearest).nearestTo(word);
    }

private:
    /// What is found in a statement by itself. Messages on commands that go on name their lines.
    struct Own {
        std::size_t first;  // the statement's line when it was judged
        std::vector<Problem> problems;
    };
    /// What is found in a statement.
    struct Record {
        std::unique_ptr<Own> own;  // null for nothing
        bool hasOthers = false;    // there is something because of other statements
    };
    /// A statement of another file.
    struct FileStatement {
        std::string const* file;
        std::size_t line;
    };

    void addFiles(std::vector<FileText> const& files);
    Record judge(Lines& lines, Statement const& statement, Facts& facts, bool& endsLoad) const;
    void refresh();
    std::vector<Problem> problemsOf(std::size_t index, NearNames& near);
    std::string placeOf(std::size_t place) const;
    std::size_t indexAt(std::size_t line) const;
    bool isTold(Code code) const;

    Text const& text_;
    Rules rules_;
    Judge judge_;
    StatementSet set_;
    std::vector<FileStatement> fileStatements_;  // in the order of the set, without the document's
    std::size_t offset_ = 0;                     // of the document's statements in the set
    std::vector<Statement> statements_;
    std::vector<Record> records_;  // of the statements
    bool isCut_ = false;           // the last statement ends the load
    bool isFileCut_ = false;       // so does one of another file
};

}  // namespace tool::lsp
