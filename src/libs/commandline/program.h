#pragma once

#include <vector>

/// What a program says of itself. Its help, its manual page and the reading of its command line all come from
/// this one table. The texts are plain English in ASCII, sentences that end with a period.
namespace Orvane::CommandLine {

struct Option {
    const char* name; ///< without the dashes
    const char* value; ///< what its value is called, null for a switch; `a|b` for one of these two
    const char* text;
    const char* preset = nullptr; ///< the value when it is not given
};

/// A term and what it means: an exit status, a file, an example.
struct Entry {
    const char* term;
    const char* text;
};

struct Program {
    const char* name;
    const char* purpose; ///< one line, without a period
    std::vector<const char*> description; ///< paragraphs
    std::vector<Option> options; ///< besides `--help` and `--version`, which every program has
    std::vector<Entry> arguments; ///< all of them needed, in this order
    std::vector<Entry> statuses;
    std::vector<Entry> examples;
    std::vector<const char*> seeAlso; ///< other pages, such as `name(1)`
};

} // namespace Orvane::CommandLine
