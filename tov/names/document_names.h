#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/dci.h"
#include "platform/export.h"
#include "tov/names/design_names.h"

namespace kiri::tov {

class TOV;
class TovCmd;

// Which objects of a design the commands of a document refer to, and which commands refer to an object:
//
//     TovDesignNames const names(design);
//     TovDocumentNames join(document, names);
//     for (TovNameUse const& use : join.missing()) warn(use.cmd->toSaveString(&document), use.word);
//     for (TovCmd* cmd : join.commandsOf(*node)) show(*cmd);
//
// An editor reports each change: remove(cmd), then the change, then add(cmd). docs/names.md has the rules.

/// A word by which a command refers to objects. Later releases may add fields at the end: only the library makes these.
struct TovNameUse {
    TovCmd* cmd;         ///< belongs to the document
    char const* role;    ///< as TovReferences has it; lives as long as the library
    taDciObjTyp type;    ///< what the word is looked for as
    std::string word;    ///< as the command has it, without braces and quotes
    TovNameMatch match;  ///< TOVMATCH_LOCAL in a hierarchical query, else the match of the join
};

/// A document joined with a design.
///
/// A word stands for nodes of the design, see TovDesignNames::find. As a clock or as a plain name it also stands for
/// the clocks that enabled commands of the document define, wherever they are: by their names, in which patterns are
/// matched as one text.
///
/// The document and the index must outlive the join, with the index's conditions on the design. The join knows the
/// commands as they were when it was made, or when add() reported them; the caller must report each that is about to
/// leave the document or to change, and make the join anew after a load. Each question looks up whether a command is
/// enabled. A join is used by one thread at a time, the one that uses the document; several joins may share one index.
/// Any call may throw std::bad_alloc: a command that add() failed for is unknown then, and nothing else changed.
class TOVENG_API TovDocumentNames {
public:
    /// Takes all commands of the document. No word is looked up yet.
    TovDocumentNames(TOV& document, TovDesignNames const& names, TovNameMatch match = TOVMATCH_LEVELS);
    ~TovDocumentNames();
    TovDocumentNames(TovDocumentNames const&) = delete;
    TovDocumentNames& operator=(TovDocumentNames const&) = delete;

    /// Returns the words of a command as it is now, in the document or not: each role, type and word once, in the order
    /// of writing. Leaves out what cannot be judged: words that are not names (see TovDesignNames::isName), a query
    /// with -of_objects, -filter, -regexp or -nocase, and a word that holds '$' and stands for nothing. An attribute
    /// has none.
    std::vector<TovNameUse> usesIn(TovCmd& cmd) const;

    /// Returns the uses that stand for nothing in the enabled commands, in the order of writing. Looks up equal words
    /// once in the life of the join.
    std::vector<TovNameUse> missing() const;

    /// The same for one command as it is now, enabled or not, in the document or not.
    std::vector<TovNameUse> missingIn(TovCmd& cmd) const;

    /// Returns the commands that refer to the node, enabled or not, in the order of writing. Commands that define a
    /// clock do not refer to a clock of the design with its name.
    std::vector<TovCmd*> commandsOf(TovNode const& node) const;

    /// Reports a command that came into the document, or that changed after remove(). The cost is
    /// that of the command alone: answers for others, which a clock definition may change, follow at the next question.
    void add(TovCmd& cmd);

    /// Reports a command that is about to leave the document or to change; ignores an unknown one. Does not throw.
    void remove(TovCmd& cmd);

private:
    class Index;
    std::unique_ptr<Index> index_;
};

}  // namespace kiri::tov
