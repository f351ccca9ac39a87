#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tov/check.h"
#include "tov/cmd/commands.h"
#include "tov/names/document_names.h"
#include "tov/tov.h"

/// A kind of lines: its title, and the line of a new one.
struct Kind {
    char const* title;
    char const* newLine;
};

/// The kinds: the ten lists of commands (that of kinds[0] is TOVCMD_CLOCK), and the comments of the two sections.
constexpr int commandKinds = kiri::tov::TOVCMD_ATTRIBUTE;
constexpr int commentKind = commandKinds;
constexpr int kindCount = commandKinds + 2;
extern Kind const kinds[kindCount];

/// The bytes of a file as text: UTF-8 where they are, else Latin-1.
QString toText(std::string const& bytes);
/// Text as bytes: UTF-8, or Latin-1 where the bytes that it replaces were. Line ends and NUL become blanks.
std::string toBytes(QString text, std::string const& replaced = {});

/// Reads a line as a load does. `kind` becomes the kind of the line, commentKind for comments of either section, or -1
/// where the result is null: a load drops the line, or does not get beyond it.
std::unique_ptr<kiri::tov::TovCmd> readLine(std::string const& line, int& kind);
/// Whether a load and a save of the finding's line lose or change something.
bool isLoss(kiri::tov::TovFinding const& finding);
/// The name of a finding and the words concerned.
QString sentenceOf(kiri::tov::TovFinding const& finding);

/// A constraint file as rows of text by kind. A row refers to a command in the document's own list; its text is made
/// when it is asked for, so a row costs sixteen bytes.
///
/// A comment is a command whose line is its text, in a list of the editor's. What a user typed in a row and is no line
/// of its kind yet is the note of the row's command, which the library never writes.
class Document {
public:
    using Commands = std::vector<std::unique_ptr<kiri::tov::TovCmd>>;
    struct Place {
        int kind;
        int row;
    };

    /// Judges names by a design, unless it is null: see setNames().
    explicit Document(std::unique_ptr<kiri::tov::TOV> tov, kiri::tov::TovDesignNames const* names);
    ~Document();
    Document(Document const&) = delete;
    Document& operator=(Document const&) = delete;

    int count(int kind) const { return static_cast<int>(rows_[kind].size()); }
    kiri::tov::TovCmd& command(Place at) const { return **row(at).at; }
    std::string savedLine(Place at) const { return command(at).toSaveString(nullptr); }
    bool isDraft(Place at) const { return !command(at).note.empty(); }
    QString text(Place at) const;  ///< what the row shows: its draft, or its line as a save writes it

    /// Takes the commands out of the rows, which ascend.
    Commands take(int kind, std::vector<int> const& rows);
    /// Puts commands in, so that they have these rows, which ascend, afterwards.
    void insert(int kind, std::vector<int> const& rows, Commands cmds);
    /// Exchanges the command of a row.
    void exchange(Place at, std::unique_ptr<kiri::tov::TovCmd>& cmd);
    /// Exchanges what is typed in a row, and whether the row is enabled.
    void exchangeState(Place at, bool& enabled, std::string& draft);

    /// The first place at or after `from`, or before it and backwards, that is wanted; all kinds in turn.
    std::optional<Place> search(Place from, bool backwards, std::function<bool(Place)> const& wanted) const;
    std::optional<Place> placeOf(kiri::tov::TovCmd const& cmd) const;
    /// Where the line of the file as it was read or saved last is now.
    std::optional<Place> placeOfLine(std::string const& path, std::size_t line) const;

    using Join = std::unique_ptr<kiri::tov::TovDocumentNames>;
    /// Looks all names up in a design, which outlives the use of the result. A job's thread may, while no other changes
    /// the document.
    Join join(kiri::tov::TovDesignNames const& names) const;
    /// Judges names by that design from now on.
    void setNames(Join names);
    /// The commands that refer to a node of that design.
    std::vector<kiri::tov::TovCmd*> commandsOf(kiri::tov::TovNode const& node) const;

    /// What is to be said about a text typed in a row of that kind.
    QString remarkOn(QString const& text, int kind) const;
    /// What is to be said about the text of the row; empty also where it is not known yet.
    QString remark(Place at) const;
    bool knowsRemark(Place at) const { return row(at).remark != unknown; }
    void makeRemark(Place at);
    void forgetRemarks();
    int remarkCount() const { return remarkCount_; }

    /// Saves atomically. Rows are then those of the new file.
    bool save(std::string const& path, std::string& error);

private:
    using List = std::list<kiri::tov::TovCmd*>;
    static constexpr std::int32_t unknown = -1, none = 0;
    struct Row {
        List::iterator at;
        std::int32_t original;          // the row at the last load or save; -1: it is new
        std::int32_t remark = unknown;  // or else none, or one more than its index in remarks_
    };

    Row& row(Place at) const { return rows_[at.kind][static_cast<std::size_t>(at.row)]; }
    List& listOf(int kind);
    void takeComments(int kind, std::string const& text);
    void forgetRemark(Row& row);
    void leaves(int kind, kiri::tov::TovCmd& cmd);
    void comes(int kind, kiri::tov::TovCmd& cmd);
    void changed(int kind);
    QString remarkOn(std::string const& line, int kind, kiri::tov::TovCmd* cmd) const;

    std::unique_ptr<kiri::tov::TOV> tov_;
    List comments_[kindCount - commandKinds];
    mutable std::vector<Row> rows_[kindCount];
    Join names_;
    std::vector<QString> remarks_;
    int remarkCount_ = 0;
};
