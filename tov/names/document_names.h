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
    char const* role;    ///< as in TovReferences; lives as long as the library
    taDciObjTyp type;    ///< the type of object that the word may match
    std::string word;    ///< as in the command, without braces and quotes
    TovNameMatch match;  ///< TOVMATCH_LOCAL in a hierarchical query, else the match of the join
};

/// A document joined with a design.
///
/// A word matches nodes of the design, see TovDesignNames::find. As a clock or a plain name it also matches the clocks
/// that enabled commands anywhere in the document define; their names are matched as one text.
///
/// The document and the index must outlive the join, and the index's conditions on the design apply. The join knows the
/// commands as they were when it was created or when add() reported them; the caller must report each command that is
/// about to leave the document or to change, and create a new join after a load. Each question checks whether a command
/// is enabled. A join may be used by one thread at a time, together with its document; several joins may share one
/// index. Any call may throw std::bad_alloc: if add() does, the command is unknown, and nothing else has changed.
class TOVENG_API TovDocumentNames {
public:
    /// Adds all commands of the document. No word is looked up yet.
    TovDocumentNames(TOV& document, TovDesignNames const& names, TovNameMatch match = TOVMATCH_LEVELS);
    ~TovDocumentNames();
    TovDocumentNames(TovDocumentNames const&) = delete;
    TovDocumentNames& operator=(TovDocumentNames const&) = delete;

    /// Returns the words of a command in its current state, in the document or not: each role, type, word and match
    /// once, in the order of writing. Leaves out what cannot be judged: words that are not names (see
    /// TovDesignNames::isName), a query with -of_objects, -filter, -regexp, -nocase or -hsc, and a word that contains
    /// '$' and matches nothing. An attribute has none.
    std::vector<TovNameUse> usesIn(TovCmd& cmd) const;

    /// Returns the uses in the enabled commands that match nothing, in the order of writing. Looks up equal words only
    /// once in the lifetime of the join.
    std::vector<TovNameUse> missing() const;

    /// The same for one command in its current state, enabled or not, in the document or not.
    std::vector<TovNameUse> missingIn(TovCmd& cmd) const;

    /// Returns the commands that refer to the node, enabled or not, in the order of writing. A command that defines a
    /// clock does not refer to a clock of the design with the same name.
    std::vector<TovCmd*> commandsOf(TovNode const& node) const;

    /// Reports a command that was added to the document, or that changed after remove(). The cost depends only on the
    /// command: if it defines a clock, the answers for other commands are updated at the next question.
    void add(TovCmd& cmd);

    /// Reports a command that is about to leave the document or to change; ignores an unknown one. Does not throw.
    void remove(TovCmd& cmd);

private:
    class Index;
    std::unique_ptr<Index> index_;
};

}  // namespace kiri::tov
