// Verbs over many date-times: sort.
#include "Commands.h"
#include "Common.h"

#include <fstream>
#include <iostream>
#include <string>

namespace orvcal {

namespace {

// An ordered set of date-times, destructed with its holder.
class DateTimeSet {
public:
    DateTimeSet() { OrvSet_OrvDateTimeConstruct(&set_, OrvAllocatorGetDefault()); }
    ~DateTimeSet() { OrvSet_OrvDateTimeDestruct(&set_); }
    DateTimeSet(const DateTimeSet&) = delete;
    DateTimeSet& operator=(const DateTimeSet&) = delete;
    OrvSet_OrvDateTime* get() { return &set_; }

private:
    OrvSet_OrvDateTime set_;
};

// Appends the text of every element, ascending or (reverse) descending.
bool WriteAll(OrvSet_OrvDateTime* set, bool reverse, std::string* out)
{
    auto put = [out](const OrvDateTime* d) {
        const std::optional<std::string> text = TextOf(d);
        if (text) *out += *text + "\n";
        return text.has_value();
    };
    if (reverse) {
        // A reverse iterator holds the node after the element it designates: it starts
        // at the end position and stops at the least element's.
        OrvSet_OrvDateTimeReverseIterator it = OrvSet_OrvDateTimeEnd(set);
        const OrvSet_OrvDateTimeReverseIterator stop = OrvSet_OrvDateTimeBegin(set);
        for (; !OrvSet_OrvDateTimeReverseIteratorEqual(&it, &stop); OrvSet_OrvDateTimeReverseIteratorIncrement(&it))
            if (!put(OrvSet_OrvDateTimeReverseIteratorContentOfConst(&it))) return false;
        return true;
    }
    OrvSet_OrvDateTimeIterator it = OrvSet_OrvDateTimeBegin(set);
    const OrvSet_OrvDateTimeIterator end = OrvSet_OrvDateTimeEnd(set);
    for (; !OrvSet_OrvDateTimeIteratorEqual(&it, &end); OrvSet_OrvDateTimeIteratorIncrement(&it))
        if (!put(OrvSet_OrvDateTimeIteratorContentOfConst(&it))) return false;
    return true;
}

} // namespace

int RunSort(Invocation& inv)
{
    const Usage usage{
        .positionals = {{"FILE", "file of date-times, one per line (default, or -: standard input)"}},
        .options = {{"--reverse", nullptr, "latest first"}, kZoneOption},
        .notes = "Each line is TEXT (YYYYMMDDTHHMMSS, Z at the end for UTC); lines without Z are read in the "
                 "--zone given, or are floating without one. Blank lines are ignored.\n"
                 "Values that denote the same instant are one: the first of them is written.\n"
                 "A bad line is reported with its number on stderr and skipped; the status is then 1.\n"
                 "Example: printf '20240501T093000Z\\n20240101T000000Z\\n' | orvcal sort",
        .optionalPositionals = 1,
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone zone;
    if (int status = ReadZoneOption(inv, "--zone", &zone); status != kOk) return status;
    const bool reverse = inv.Option("--reverse") != nullptr;

    std::ifstream file;
    std::istream* in = &std::cin;
    const std::string_view path = inv.PositionalCount() == 1 ? inv.Positional(0) : "-";
    if (path != "-") {
        file.open(std::string(path));
        if (!file) return inv.Refuse("FILE", path, "a file that can be read");
        in = &file;
    }

    DateTimeSet set;
    std::size_t lineNumber = 0;
    std::size_t bad = 0;
    for (std::string line; std::getline(*in, line);) {
        ++lineNumber;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.find_first_not_of(" \t") == std::string::npos) continue;
        DateTime value;
        if (ReadDateTimeLine(inv, lineNumber, line, zone, &value) != kOk) {
            inv.ReportNow();
            ++bad;
            continue;
        }
        const OrvPair_OrvSet_OrvDateTimeIterator__OrvBool r = OrvSet_OrvDateTimeInsert(set.get(), value.get());
        if (r.first == OrvSet_OrvDateTimeEnd(set.get())) return inv.Internal("out of memory");
    }
    if (in->bad()) return inv.Refuse("FILE", path, "a file that can be read");

    if (!WriteAll(set.get(), reverse, &inv.Out())) return inv.Internal("cannot write the text form");
    if (bad == 0) return kOk;
    // The good lines are still written; the status says that some were skipped.
    return inv.Skipped("skipped " + std::to_string(bad) + " bad line" + (bad == 1 ? "" : "s") + " of " +
                       std::to_string(lineNumber));
}

} // namespace orvcal
