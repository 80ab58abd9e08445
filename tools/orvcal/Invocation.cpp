#include "Invocation.h"

#include <cstddef>

namespace orvcal {

namespace {

constexpr std::size_t kLabelWidth = 15;

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
    for (const OptionSpec& o : usage.options) s.append(" [").append(OptionWithValue(o)).append("]");
    return s;
}

std::string OptionList(const Usage& usage)
{
    std::string s;
    for (const OptionSpec& o : usage.options) s.append(s.empty() ? "" : ", ").append(o.name);
    return s.empty() ? "--help" : s + " or --help";
}

} // namespace

Invocation::Invocation(std::string_view verb, std::string_view summary, std::vector<std::string_view> args)
    : verb_(verb), summary_(summary), args_(std::move(args))
{
}

std::string Invocation::HelpText(std::string_view verb, std::string_view summary, const Usage& usage)
{
    std::string s = "usage: " + Synopsis(verb, usage) + "\n\n" + std::string(summary) + "\n";
    auto row = [&s](std::string_view left, std::string_view help) {
        std::string cell("  ");
        cell.append(left);
        cell.resize(cell.size() < kLabelWidth ? kLabelWidth : cell.size() + 1, ' ');
        s += cell + std::string(help) + "\n";
    };
    if (usage.positionals.size() != 0) {
        s += "\narguments:\n";
        for (const PositionalSpec& p : usage.positionals) row(p.name, p.help);
    }
    s += "\noptions:\n";
    for (const OptionSpec& o : usage.options) row(OptionWithValue(o), o.help);
    row("--help", "show this help");
    if (usage.notes != nullptr) s += "\n" + std::string(usage.notes) + "\n";
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
            RefuseUsage("unknown option '" + std::string(name) + "' (expected " + OptionList(usage) + ")");
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
    const std::size_t want = usage.positionals.size();
    if (positionals_.size() < want - usage.optionalPositionals) {
        const PositionalSpec& missing = usage.positionals.begin()[positionals_.size()];
        RefuseUsage("missing " + std::string(missing.name) + " (expected " + missing.help + "; usage: " +
                    Synopsis(verb_, usage) + ")");
        return false;
    }
    if (positionals_.size() > want) {
        RefuseUsage("unexpected argument '" + std::string(positionals_[want]) + "' (usage: " + Synopsis(verb_, usage) +
                    ")");
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

int Invocation::Refuse(std::string_view what, std::string_view value, std::string_view expected)
{
    return RefuseUsage(std::string(what) + " '" + std::string(value) + "': expected " + std::string(expected));
}

int Invocation::RefuseUsage(std::string_view message)
{
    error_ = "orvcal " + std::string(verb_) + ": " + std::string(message);
    return kBadInput;
}

int Invocation::Internal(std::string_view message)
{
    error_ = "orvcal " + std::string(verb_) + ": internal error: " + std::string(message);
    return kInternalError;
}

} // namespace orvcal
