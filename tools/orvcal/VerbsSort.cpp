// Verbs over many date-times: sort.
#include "Commands.h"
#include "Common.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
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

// A file opened for reading, closed with its holder; standard input is borrowed.
class InputFile {
public:
    explicit InputFile(std::string_view path)
        : f_(path == "-" ? stdin : std::fopen(std::string(path).c_str(), "rb")), owned_(f_ != nullptr && f_ != stdin)
    {
    }
    ~InputFile()
    {
        if (owned_) std::fclose(f_);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    std::FILE* get() const { return f_; }

private:
    std::FILE* f_;
    bool owned_;
};

// Splits bytes into lines in bounded memory: of a line it keeps the first kKept bytes
// and counts the rest, so input of any length and content (NUL bytes, no newline at
// all) costs no more than the buffer. A line ends at "\n" or "\r\n", or at the end of
// the input; a UTF-8 byte-order mark before the first line is skipped.
class LineReader {
public:
    static constexpr std::size_t kKept = 64; // well over the longest text, and over what a refusal shows

    explicit LineReader(std::FILE* f) : f_(f) {}

    // Reads the next line; false at the end of the input or on a read error.
    bool Next()
    {
        kept_.clear();
        length_ = 0;
        nonBlank_ = 0;
        bool any = false;
        char last = '\0';
        for (;;) {
            if (pos_ == end_ && !Fill()) break;
            any = true;
            const char* start = buf_ + pos_;
            const auto* newline = static_cast<const char*>(std::memchr(start, '\n', end_ - pos_));
            const std::size_t n = newline != nullptr ? static_cast<std::size_t>(newline - start) : end_ - pos_;
            kept_.append(start, std::min(n, kKept - kept_.size()));
            length_ += n;
            nonBlank_ += static_cast<std::size_t>(
                std::count_if(start, start + n, [](char c) { return c != ' ' && c != '\t'; }));
            if (n != 0) last = start[n - 1];
            pos_ += n;
            if (newline != nullptr) {
                ++pos_;
                break;
            }
        }
        if (!any) return false;
        if (last == '\r') { // part of the line ending
            --length_;
            --nonBlank_;
            if (kept_.size() > length_) kept_.pop_back();
        }
        if (first_) {
            first_ = false;
            if (kept_.compare(0, 3, "\xEF\xBB\xBF") == 0) {
                kept_.erase(0, 3);
                length_ -= 3;
                nonBlank_ -= 3;
            }
        }
        return true;
    }

    std::string_view Kept() const { return kept_; }
    std::size_t Length() const { return length_; }
    bool Blank() const { return nonBlank_ == 0; } // empty, or spaces and tabs only
    bool Failed() const { return std::ferror(f_) != 0; }

private:
    bool Fill()
    {
        if (eof_) return false;
        pos_ = 0;
        end_ = std::fread(buf_, 1, sizeof buf_, f_);
        eof_ = end_ == 0;
        return !eof_;
    }

    std::FILE* f_;
    char buf_[1 << 16];
    std::size_t pos_ = 0;
    std::size_t end_ = 0;
    bool eof_ = false;
    bool first_ = true;
    std::string kept_;
    std::size_t length_ = 0;
    std::size_t nonBlank_ = 0;
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
        .notes = "Each line is TEXT (YYYYMMDDTHHMMSS, Z at the end for UTC, or ISO 8601); lines without Z or an "
                 "offset are read in the --zone given, or are floating without one. Blank lines are ignored; a line "
                 "may end in CRLF.\n"
                 "Lines are written in the compact form: a line with an offset as its instant in UTC; fractions of "
                 "a second order the lines but are not written.\n"
                 "Values that denote the same instant are one: the first of them is written.\n"
                 "A bad line is reported with its number on stderr and skipped; the status is then 1.\n"
                 "Example: printf '20240501T093000Z\\n20240101T000000Z\\n' | orvcal sort",
        .optionalPositionals = 1,
    };
    if (!inv.Read(usage)) return inv.Finished();
    Zone zone;
    if (int status = ReadZoneOption(inv, "--zone", &zone); status != kOk) return status;
    const bool reverse = inv.Option("--reverse") != nullptr;

    const std::string_view path = inv.PositionalCount() == 1 ? inv.Positional(0) : "-";
    const InputFile file(path);
    if (file.get() == nullptr) return inv.Refuse("FILE", path, "a file that can be read");

    DateTimeSet set;
    LineReader lines(file.get());
    std::size_t lineNumber = 0;
    std::size_t bad = 0;
    while (lines.Next()) {
        ++lineNumber;
        if (lines.Blank()) continue;
        DateTime value;
        if (ReadDateTimeLine(inv, lineNumber, lines.Kept(), lines.Length(), zone, &value) != kOk) {
            inv.ReportNow();
            ++bad;
            continue;
        }
        const OrvPair_OrvSet_OrvDateTimeIterator__OrvBool r = OrvSet_OrvDateTimeInsert(set.get(), value.get());
        if (r.first == OrvSet_OrvDateTimeEnd(set.get())) return inv.Internal("out of memory");
    }
    if (lines.Failed()) return inv.Refuse("FILE", path, "a file that can be read");

    if (!WriteAll(set.get(), reverse, &inv.Out())) return inv.Internal("cannot write the text form");
    if (bad == 0) return kOk;
    // The good lines are still written; the status says that some were skipped.
    return inv.Skipped("skipped " + std::to_string(bad) + " bad line" + (bad == 1 ? "" : "s") + " of " +
                       std::to_string(lineNumber));
}

} // namespace orvcal
