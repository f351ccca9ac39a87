#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tov/check.h"

namespace kiri::tov::impl_detail {

/// Why a save does not keep a word; finding_message.cpp has a text for each cause.
enum class Cause {
    other,
    // Words that are lost.
    unknownOption,
    shortOption,
    noSetupOrHold,
    noCycleOwner,
    noEdges,
    noEdgePoints,
    noComment,
    noGroupName,
    exclusiveByName,
    asynchronousToo,
    throughElsewhere,
    throughBesideOthers,
    repeatedFlag,
    repeatedValue,
    repeatedObjects,
    withoutValue,
    withoutObjects,
    laterNumber,
    laterObjects,
    laterTarget,
    laterOption,
    firstObject,
    firstTarget,
    firstOfOption,
    queryOption,
    queryInQuery,
    outsideOptions,
    numberOfFalsePath,
    outsideGroups,
    afterTexts,
    afterNul,
    // Values that are changed or added, or lost because they are not numbers.
    noPeriod,
    noNumber,
    notNumber,
    variable,
    expression,
    enclosedNumber,
    roundedNumber,
    largeNumber,
    fraction,
    noRelation,
    reservedKey,
    groupMember,
    longKeyword,
    longAttribute,
    lineEnd,
    strayBackslash,
    // Words that are mistaken for names.
    optionAsValue,
    unbracedIndex,
    severalIndexes,
    indexOfIndex,
    unbalanced,
    // Lines that are read back as something else.
    lineFeed,
    attributeText,
    clockName,
    objectName,
};

/// Words of a finding with the same cause.
struct CausedWords {
    Cause cause;
    std::string about;  ///< what the text of the cause mentions, such as an option
    std::string words;  ///< separated by blanks
    bool areAdded;      ///< a save adds them to the line
};

struct FindingCauses {
    std::vector<CausedWords> causes;  ///< in the order of the words; empty if the line does not have the finding
    std::string saved;                ///< the line that a save writes
};

/// Explains a finding of the kinds 3, 4, 5 and 7.
FindingCauses causesOf(TovFinding const& finding, std::string_view text);

}  // namespace kiri::tov::impl_detail
