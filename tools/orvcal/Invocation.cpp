#include "Invocation.h"

#include "Output.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace orvcal {

namespace {

constexpr std::size_t kLabelWidth = 15;
constexpr std::size_t kHelpWidth = 80;   // help rows wrap before this column
constexpr std::size_t kQuotedColumns = 40; // Quoted cuts after this many columns

constexpr StatusMeaning kStatusMeanings[] = {
    {kOk, "done (also when the reader of the output stops early, as head does)"},
    {kLinesSkipped, "sort only: some lines were refused, each reported on stderr; the others are written"},
    {kBadInput, "an argument was refused: one line on stderr, nothing on stdout"},
    {kWriteFailed, "the output could not be written (a full disk, a closed descriptor): one line on stderr"},
    {kInternalError, "internal error: the library failed where it should not (out of memory)"},
};

std::string OptionWithValue(const OptionSpec& o)
{
    return o.value == nullptr ? std::string(o.name) : std::string(o.name) + " " + o.value;
}

std::string Synopsis(std::string_view verb, const Usage& usage)
{
    std::string s = "orvcal " + std::string(verb);
    const std::size_t required = usage.positionals.size() - usage.optionalPositionals;
    std::size_t i = 0;
    // Appends only: g++ 12 at -O3 misreads prepending to a temporary as overlapping copies.
    for (const PositionalSpec& p : usage.positionals) {
        const bool optional = i++ >= required;
        s.append(optional ? " [" : " ").append(p.name).append(optional ? "]" : "");
    }
    i = 0;
    for (const OptionSpec& o : usage.options) {
        const bool optional = i++ >= usage.requiredOptions;
        s.append(optional ? " [" : " ").append(OptionWithValue(o)).append(optional ? "]" : "");
    }
    return s;
}

std::string OptionList(const Usage& usage)
{
    std::string s;
    for (const OptionSpec& o : usage.options) s.append(s.empty() ? "" : ", ").append(o.name);
    return s.empty() ? "--help" : s + " or --help";
}

// The length of the UTF-8 sequence at text[i] and its code point, or 0 when the bytes
// there are not well-formed UTF-8 (overlong forms and surrogates included).
std::size_t Utf8At(std::string_view text, std::size_t i, char32_t* cp)
{
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[i + k]); };
    const unsigned char b0 = byte(0);
    std::size_t len = 0;
    unsigned char lo = 0x80, hi = 0xBF; // range of the second byte
    if (b0 >= 0xC2 && b0 <= 0xDF) {
        len = 2;
    } else if (b0 >= 0xE0 && b0 <= 0xEF) {
        len = 3;
        lo = b0 == 0xE0 ? 0xA0 : 0x80; // no overlong forms
        hi = b0 == 0xED ? 0x9F : 0xBF; // no surrogates
    } else if (b0 >= 0xF0 && b0 <= 0xF4) {
        len = 4;
        lo = b0 == 0xF0 ? 0x90 : 0x80; // no overlong forms
        hi = b0 == 0xF4 ? 0x8F : 0xBF; // nothing above U+10FFFF
    }
    if (len == 0 || i + len > text.size() || byte(1) < lo || byte(1) > hi) return 0;
    char32_t c = b0 & (0x7F >> len);
    for (std::size_t k = 1; k < len; ++k) {
        if ((byte(k) & 0xC0) != 0x80) return 0;
        c = (c << 6) | (byte(k) & 0x3F);
    }
    *cp = c;
    return len;
}

// Code points beyond ASCII that a terminal does not show as themselves: C1 controls,
// line and paragraph separators, and the controls that reorder bidirectional text.
bool Invisible(char32_t c)
{
    return (c >= 0x80 && c <= 0x9F) || c == 0x2028 || c == 0x2029 || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

// Appends text after label, wrapped at spaces before kHelpWidth; the lines after the
// first are indented to the width of label.
void Wrap(std::string* s, std::string_view label, std::string_view text)
{
    std::string line(label);
    do {
        std::size_t take = text.size();
        if (line.size() + take > kHelpWidth) {
            const std::size_t room = kHelpWidth > line.size() ? kHelpWidth - line.size() : 0;
            const std::size_t space = text.rfind(' ', room);
            take = space != std::string_view::npos && space != 0 ? space : std::min(text.find(' '), text.size());
        }
        s->append(line).append(text.substr(0, take)) += '\n';
        text.remove_prefix(take);
        while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
        line.assign(label.size(), ' ');
    } while (!text.empty());
}

} // namespace

std::span<const StatusMeaning> StatusMeanings() { return kStatusMeanings; }

std::string Quoted(std::string_view value)
{
    std::string s = "'";
    std::size_t columns = 0;
    std::size_t i = 0;
    while (i < value.size()) {
        char piece[16];
        std::size_t pieceColumns = 0;
        std::size_t used = 1;
        const auto c = static_cast<unsigned char>(value[i]);
        char32_t cp = 0;
        if (c == '\t' || c == '\r' || c == '\n' || c == '\\') {
            piece[0] = '\\';
            piece[1] = c == '\t' ? 't' : c == '\r' ? 'r' : c == '\n' ? 'n' : '\\';
            piece[2] = '\0';
            pieceColumns = 2;
        } else if (c >= 0x20 && c < 0x7F) {
            piece[0] = static_cast<char>(c);
            piece[1] = '\0';
            pieceColumns = 1;
        } else if (c >= 0x80 && (used = Utf8At(value, i, &cp)) != 0 && !Invisible(cp)) {
            pieceColumns = 1; // one character; wide ones are rare enough in a refusal
        } else if (used != 0 && c >= 0x80) {
            pieceColumns = static_cast<std::size_t>(std::snprintf(piece, sizeof piece, "\\u%04X", static_cast<unsigned>(cp)));
        } else {
            used = 1;
            pieceColumns = static_cast<std::size_t>(std::snprintf(piece, sizeof piece, "\\x%02X", c));
        }
        if (columns + pieceColumns > kQuotedColumns) return s + "...'";
        columns += pieceColumns;
        if (pieceColumns == 1 && used > 1) s.append(value.substr(i, used));
        else s.append(piece);
        i += used;
    }
    return s + "'";
}

Invocation::Invocation(std::string_view verb, std::string_view summary, std::vector<std::string_view> args)
    : verb_(verb), summary_(summary), args_(std::move(args))
{
}

std::string Invocation::HelpText(std::string_view verb, std::string_view summary, const Usage& usage)
{
    std::string s = "usage: " + Synopsis(verb, usage) + "\n\n" + std::string(summary) + "\n";
    auto row = [&s](std::string_view left, std::string_view help) {
        std::string label("  ");
        label.append(left);
        label.resize(label.size() < kLabelWidth ? kLabelWidth : label.size() + 1, ' ');
        Wrap(&s, label, help);
    };
    if (usage.positionals.size() != 0) {
        s += "\narguments:\n";
        for (const PositionalSpec& p : usage.positionals) row(p.name, p.help);
    }
    s += "\noptions:\n";
    for (const OptionSpec& o : usage.options) row(OptionWithValue(o), o.help);
    row("--help", "show this help");
    if (usage.notes != nullptr) {
        s += "\n";
        // Each line of the notes is a paragraph of its own.
        for (std::string_view notes = usage.notes; !notes.empty();) {
            const std::size_t end = notes.find('\n');
            Wrap(&s, "", notes.substr(0, end));
            notes.remove_prefix(end == std::string_view::npos ? notes.size() : end + 1);
        }
    }
    return s;
}

bool Invocation::Read(const Usage& usage)
{
    for (std::string_view a : args_) {
        if (a == "--") break;
        if (a == "--help" || a == "-h") {
            out_ = HelpText(verb_, summary_, usage);
            return false;
        }
    }
    bool optionsEnded = false;
    for (std::size_t i = 0; i < args_.size(); ++i) {
        const std::string_view a = args_[i];
        if (!optionsEnded && a == "--") {
            optionsEnded = true;
            continue;
        }
        if (optionsEnded || a.size() < 2 || a.substr(0, 2) != "--") {
            positionals_.push_back(a);
            continue;
        }
        const std::size_t eq = a.find('=');
        const std::string_view name = a.substr(0, eq);
        const OptionSpec* option = nullptr;
        for (const OptionSpec& o : usage.options)
            if (name == o.name) option = &o;
        if (option == nullptr) {
            RefuseUsage("unknown option " + Quoted(name) + " (expected " + OptionList(usage) + ")");
            return false;
        }
        std::string_view value;
        if (option->value == nullptr) {
            if (eq != std::string_view::npos) {
                RefuseUsage(std::string(name) + " takes no value");
                return false;
            }
        } else if (eq != std::string_view::npos) {
            value = a.substr(eq + 1);
        } else if (i + 1 < args_.size()) {
            value = args_[++i];
        } else {
            RefuseUsage(std::string(name) + " needs a value " + option->value + " (expected " + option->help + ")");
            return false;
        }
        if (!options_.emplace(name, value).second) {
            RefuseUsage(std::string(name) + " given twice (expected it at most once)");
            return false;
        }
    }
    std::size_t i = 0;
    for (const OptionSpec& o : usage.options) {
        if (i++ >= usage.requiredOptions) break;
        if (options_.count(o.name) == 0) {
            RefuseUsage("missing " + OptionWithValue(o) + " (expected " + o.help + "; usage: " +
                        Synopsis(verb_, usage) + ")");
            return false;
        }
    }
    const std::size_t want = usage.positionals.size();
    if (positionals_.size() < want - usage.optionalPositionals) {
        const PositionalSpec& missing = usage.positionals.begin()[positionals_.size()];
        RefuseUsage("missing " + std::string(missing.name) + " (expected " + missing.help + "; usage: " +
                    Synopsis(verb_, usage) + ")");
        return false;
    }
    if (positionals_.size() > want) {
        RefuseUsage("unexpected argument " + Quoted(positionals_[want]) + " (usage: " + Synopsis(verb_, usage) + ")");
        return false;
    }
    return true;
}

const std::string_view* Invocation::Option(std::string_view name) const
{
    const auto it = options_.find(name);
    return it == options_.end() ? nullptr : &it->second;
}

void Invocation::Field(std::string_view label, std::string_view value)
{
    std::string cell(label);
    cell.resize(cell.size() < kLabelWidth ? kLabelWidth : cell.size() + 1, ' ');
    out_ += cell;
    out_ += value;
    out_ += '\n';
}

std::string Invocation::Prefix() const
{
    return verb_.empty() ? std::string("orvcal: ") : "orvcal " + std::string(verb_) + ": ";
}

int Invocation::Refuse(std::string_view what, std::string_view value, std::string_view expected)
{
    return RefuseUsage(std::string(what) + " " + Quoted(value) + ": expected " + std::string(expected));
}

int Invocation::RefuseUsage(std::string_view message)
{
    error_ = Prefix() + std::string(message);
    return kBadInput;
}

int Invocation::Internal(std::string_view message)
{
    error_ = Prefix() + "internal error: " + std::string(message);
    return kInternalError;
}

int Invocation::Skipped(std::string_view message)
{
    error_ = Prefix() + std::string(message);
    return kLinesSkipped;
}

void Invocation::ReportNow()
{
    WriteErrorLine(error_);
    error_.clear();
}

} // namespace orvcal
