// One run of a verb: its arguments split into positionals and options by the verb's
// usage, the output kept back until the verb is done, and the one-line refusal that
// names the offending argument.
#ifndef ORVCAL_INVOCATION_H
#define ORVCAL_INVOCATION_H

#include <cstddef>
#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvcal {

// Exit statuses; kStatusMeanings below says what each means, for --help.
inline constexpr int kOk = 0;
inline constexpr int kLinesSkipped = 1;  // sort: some input lines were refused and skipped
inline constexpr int kBadInput = 2;      // an argument was refused
inline constexpr int kWriteFailed = 3;   // the output could not be written
inline constexpr int kInternalError = 4; // the library failed where it should not

struct StatusMeaning {
    int status;
    const char* meaning;
};
std::span<const StatusMeaning> StatusMeanings();

struct PositionalSpec {
    const char* name; // upper case, as in the synopsis: TEXT, FIELD
    const char* help;
};

struct OptionSpec {
    const char* name;  // with its dashes: "--zone"
    const char* value; // placeholder of its value: "ZONE"; null for a flag that takes no value
    const char* help;
};

// What a verb accepts; also the source of its --help text.
struct Usage {
    std::initializer_list<PositionalSpec> positionals;
    std::initializer_list<OptionSpec> options;
    const char* notes = nullptr; // extra paragraph for --help, may be null
    std::size_t optionalPositionals = 0; // how many of the last positionals may be left out
    std::size_t requiredOptions = 0;     // how many of the first options must be given
};

// value as a refusal quotes it: between single quotes, control characters, invalid
// UTF-8 and backslashes escaped (\t, \r, \x01, \\), cut after about 40 columns with "...".
std::string Quoted(std::string_view value);

class Invocation {
public:
    // verb is empty for the tool's own --help and for an unknown verb.
    Invocation(std::string_view verb, std::string_view summary, std::vector<std::string_view> args);

    // Splits the arguments by usage. False when the verb is finished already: --help
    // was asked for (help text in the output, status kOk), or an argument was refused
    // (status kBadInput). Options may come anywhere, as "--zone Z" or "--zone=Z";
    // "--" ends them, so that later arguments are positionals even with dashes.
    bool Read(const Usage& usage);

    // The i-th positional (Read made sure that all but the optional ones are there).
    std::string_view Positional(std::size_t i) const { return positionals_[i]; }
    std::size_t PositionalCount() const { return positionals_.size(); }
    // An option's value, or null when it was not given (empty for a flag that was).
    const std::string_view* Option(std::string_view name) const;

    // Output, written to stdout when the verb ends with kOk or kLinesSkipped.
    std::string& Out() { return out_; }
    const std::string& Out() const { return out_; }
    // Appends "label" padded to the label column, the value and a newline.
    void Field(std::string_view label, std::string_view value);

    // Refuses the argument `what` (a positional's name or an option) whose value is
    // `value` (quoted as Quoted does), saying what was expected. Returns kBadInput.
    int Refuse(std::string_view what, std::string_view value, std::string_view expected);
    // Refuses with a free message (missing or surplus arguments). Returns kBadInput.
    int RefuseUsage(std::string_view message);
    // The library failed where it should not. Returns kInternalError.
    int Internal(std::string_view message);
    // Ends a verb that skipped some of its input: the message closes stderr, the
    // output is still written. Returns kLinesSkipped.
    int Skipped(std::string_view message);
    // Writes the refusal at hand to stderr now and forgets it, for a verb that goes on
    // after refusing one of many inputs.
    void ReportNow();

    // The status of a verb that Read finished early: kOk after --help, else kBadInput.
    int Finished() const { return error_.empty() ? kOk : kBadInput; }

    // The message for stderr (one line, no newline), empty when there is none.
    const std::string& Error() const { return error_; }
    std::string_view Verb() const { return verb_; }
    // "orvcal show: ", or "orvcal: " without a verb.
    std::string Prefix() const;

    // The --help text of a verb.
    static std::string HelpText(std::string_view verb, std::string_view summary, const Usage& usage);

private:
    std::string_view verb_;
    std::string_view summary_;
    std::vector<std::string_view> args_;
    std::vector<std::string_view> positionals_;
    std::map<std::string_view, std::string_view> options_;
    std::string out_;
    std::string error_;
};

} // namespace orvcal

#endif
