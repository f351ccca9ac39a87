#include "command.h"
#include "findings.h"
#include "text.h"
#include "tov/cmd/cmd.h"

using namespace kiri::tov;

namespace tool {

int objects(Arguments const& arguments) {
    std::vector<taDciObjTyp> types = {taDciObjPort, taDciObjPin, taDciObjNet, taDciObjCell, taDciObjClock};
    taDciObjTyp wanted = taDciObjName;
    if (arguments.has("type")) {
        wanted = types[arguments.choose("type", {"port", "pin", "net", "cell", "clock"})];
        types = {wanted};
    }
    TovNameMatch const match = arguments.match();
    TOV& document = keep<TOV>();
    if (arguments.has("constraints")) {
        read(document, Input(arguments.value("constraints"), Content::constraints), progressBar());
    }
    Design const& design = keep<Design>(arguments.value("design"));
    TovDocumentNames const commands(document, *design.names, match);
    int status = 0;
    int suggestions = suggestionsAtMost;
    std::vector<TovNode const*> nodes;
    for (std::string const& word : arguments.words()) {
        if (!design.names->has(wanted, word, match)) {
            complain("toveng: " + missingMessage(wanted, word, *design.names, suggestions));
            status = 1;
        }
        for (taDciObjTyp type : types) {
            design.names->find(type, word, nodes, match);
            for (TovNode const* node : nodes) {
                printLine(titleOf(type), toText(design.names->nameOf(*node)));
                for (TovCmd* cmd : commands.commandsOf(*node)) printLine("   ", toText(cmd->toSaveString(&document)));
            }
        }
    }
    return status;
}

}  // namespace tool
