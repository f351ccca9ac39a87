#pragma once

#include <QCommandLineParser>
#include <initializer_list>
#include <string>
#include <vector>

#include "tov/names/design_names.h"

namespace tool {

/// The arguments of a command, as unchanged bytes.
class Arguments {
public:
    explicit Arguments(QCommandLineParser const& parser) : parser_(parser) {}

    bool has(char const* option) const { return parser_.isSet(option); }
    /// Returns the last value of an option; empty if the option is not given.
    std::string value(char const* option) const { return parser_.value(option).toLatin1().toStdString(); }
    /// Returns all values of an option that may be repeated.
    std::vector<std::string> values(char const* option) const;
    /// The arguments that are not options.
    std::vector<std::string> words() const;
    /// Returns the index of an option's value in `choices`, whose first entry is the default. Throws Trouble for any
    /// other value.
    std::size_t choose(char const* option, std::initializer_list<char const*> choices) const;
    kiri::tov::TovNameMatch match() const {
        return static_cast<kiri::tov::TovNameMatch>(choose("match", {"levels", "local", "flat"}));
    }

private:
    QCommandLineParser const& parser_;
};

// Run a command and return its exit status.
int check(Arguments const& arguments);
int coverage(Arguments const& arguments);
int diff(Arguments const& arguments);
int objects(Arguments const& arguments);
int format(Arguments const& arguments);
int serve(Arguments const& arguments);
int import(Arguments const& arguments);

}  // namespace tool
