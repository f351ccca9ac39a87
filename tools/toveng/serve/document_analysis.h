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

/// The context in which a document is judged.
struct Rules {
    kiri::tov::TovDesignNames const* names = nullptr;
    bool isDesignPending = false;  ///< a design is set but not loaded: names are not judged
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
    std::vector<MissingWord> words{};  ///< that match nothing, for undefined-clock and missing-name
};

/// The findings of a document, updated while it is edited: after an edit, only the statements that it may affect are
/// judged again. The text and the objects to which the rules refer must outlive it.
class DocumentAnalysis {
public:
    DocumentAnalysis(Text const& text, Rules rules);

    /// Updates the findings after an edit of the text.
    void apply(Splice const& splice);

    using Visitor = std::function<void(Problem const& problem)>;
    /// Calls `visit` with each finding, in the order of the lines and, in one line, of the codes.
    void forEachProblem(Visitor const& visit);

    /// Returns the statement that a line belongs to; null after a line that ends the load.
    Statement const* statementAt(std::size_t line) const;
    /// Returns the findings of the statement that a line belongs to.
    std::vector<Problem> problemsAt(std::size_t line);
    /// Returns the nearest name for a word that matches nothing; empty if there is none.
    std::string nearestTo(MissingWord const& word) const {
        return NearNames(set_.clocks(), rules_.nearest).nearestTo(word);
    }

private:
    /// The findings in a single statement. Messages about continued commands name their lines.
    struct Own {
        std::size_t first;  // the statement's line when it was judged
        std::vector<Problem> problems;
    };
    /// The findings in a statement.
    struct Record {
        std::unique_ptr<Own> own;  // null for nothing
        bool hasOthers = false;    // there are findings because of other statements
    };
    /// A statement of another file.
    struct FileStatement {
        std::string const* file;
        std::size_t line;
    };

    void addFiles(std::vector<FileText> const& files);
    Record judge(Lines& lines, Statement const& statement, Facts& facts, bool& endsLoad) const;
    std::size_t firstChanged(StatementScanner& scanner, std::size_t line) const;
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
