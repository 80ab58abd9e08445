// Verbs over many date-times: sort.
#include "Commands.h"
#include "Common.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace orvcal {

namespace {

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

// One good line, as sort keeps it: where its value falls in the order of the ordered
// set (OrvDateTimeLess: by instant, and by the UTC reading where a value has no instant,
// which is the same order), its place among the good lines, and its text. 24 bytes
// instead of a set node and its value, and one sort instead of a tree walk per line.
struct Entry {
    OrvInt64 seconds;   // the value's UTC reading: whole seconds since 1970-01-01T00:00:00...
    OrvUint32 nanos;    // ...and nanoseconds, 0..999999999
    OrvUint32 order;    // 0, 1, 2, ... in input order: of equal values the first is written
    std::uint64_t text; // the compact form's fields (Pack), or kSpelled and an index of the spelled texts
};

constexpr OrvInt64 kNanosPerSecond = ORV_TIME_NANOSECONDS_PER_SECOND;
constexpr std::uint64_t kSpelled = std::uint64_t{1} << 63;

// floor(a / b) and the remainder that goes with it (0 <= r < b), for b > 0.
void FloorDivide(OrvInt64 a, OrvInt64 b, OrvInt64* q, OrvInt64* r)
{
    *q = a / b;
    *r = a % b;
    if (*r < 0) {
        *q -= 1;
        *r += b;
    }
}

// The UTC reading of d as seconds and nanoseconds: its instant when it has one; for a
// value without an instant (a date outside 1677..2262), its fields read as local time
// minus its offset, exactly what OrvDateTimeLess compares such values by. Values
// equal here are one key of the set. False for a value without an offset, which no
// line gives.
bool UtcReading(const OrvDateTime* d, OrvInt64* seconds, OrvUint32* nanos)
{
    OrvInt64 s = 0;
    OrvInt64 ns = 0;
    const OrvTime wall = OrvDateTimeGetWallTime(d); // normalizes, as the set's comparisons do
    if (wall != ORV_TIME_INVALID) {
        FloorDivide(wall, kNanosPerSecond, &s, &ns);
    } else {
        if (d->offset == ORV_TIME_INVALID) return false;
        // |days| < 2^40, so the local seconds stay below 2^57.
        const OrvInt64 local = OrvDateTimeGetDaysSincePosixEpoch_(d) * 86400 + OrvInt64{d->hour} * 3600 +
                               OrvInt64{d->min} * 60 + d->sec;
        OrvInt64 offsetSeconds = 0;
        OrvInt64 offsetNanos = 0;
        FloorDivide(d->offset, kNanosPerSecond, &offsetSeconds, &offsetNanos);
        s = local - offsetSeconds;
        ns = OrvInt64{d->nanosec} - offsetNanos;
        if (ns < 0) {
            ns += kNanosPerSecond;
            s -= 1;
        }
    }
    *seconds = s;
    *nanos = static_cast<OrvUint32>(ns);
    return true;
}

// The fields TextOf writes ("%04d%02d%02dT%02d%02d%02d", then Z for a value in the
// global UTC zone that is not floating), packed: year 14 bits, month 4, day 5, hour 5,
// minute 6, second 6, Z 1. False when a field is outside the range that packs, and
// then the text is spelled out by TextOf instead.
bool Pack(const OrvDateTime* d, std::uint64_t* packed)
{
    const auto in = [](OrvInt v, OrvInt lo, OrvInt hi) { return v >= lo && v <= hi; };
    if (!in(d->year, 0, 9999) || !in(d->month, 1, 12) || !in(d->monthDay, 1, 31) || !in(d->hour, 0, 23) ||
        !in(d->min, 0, 59) || !in(d->sec, 0, 59))
        return false;
    const bool z = OrvDateTimeIsUTC(d) && !OrvDateTimeIsFloating(d);
    std::uint64_t p = static_cast<std::uint64_t>(d->year);
    p = p << 4 | static_cast<std::uint64_t>(d->month);
    p = p << 5 | static_cast<std::uint64_t>(d->monthDay);
    p = p << 5 | static_cast<std::uint64_t>(d->hour);
    p = p << 6 | static_cast<std::uint64_t>(d->min);
    p = p << 6 | static_cast<std::uint64_t>(d->sec);
    *packed = p << 1 | (z ? 1 : 0);
    return true;
}

// Appends the packed text and a newline: 16 or 17 characters.
void AppendPacked(std::uint64_t p, std::string* out)
{
    char buf[17];
    const bool z = (p & 1) != 0;
    p >>= 1;
    const auto field = [&p](int bits) {
        const auto v = static_cast<unsigned>(p & ((std::uint64_t{1} << bits) - 1));
        p >>= bits;
        return v;
    };
    const unsigned sec = field(6), min = field(6), hour = field(5), day = field(5), month = field(4);
    const auto year = static_cast<unsigned>(p);
    const auto two = [&buf](int at, unsigned v) {
        buf[at] = static_cast<char>('0' + v / 10);
        buf[at + 1] = static_cast<char>('0' + v % 10);
    };
    two(0, year / 100);
    two(2, year % 100);
    two(4, month);
    two(6, day);
    buf[8] = 'T';
    two(9, hour);
    two(11, min);
    two(13, sec);
    std::size_t n = 15;
    if (z) buf[n++] = 'Z';
    buf[n++] = '\n';
    out->append(buf, n);
}

// The good lines of the input: every one kept, with its text.
class Entries {
public:
    // Once kSample lines are kept, after `read` bytes of a file of fileBytes bytes,
    // room for the lines the whole file holds at that rate, and a tenth more: the
    // storage then does not grow, copying itself, while a large file is read. Without
    // that room it grows as it must.
    static constexpr std::size_t kSample = 4096;
    void Expect(OrvInt64 fileBytes, OrvInt64 read)
    {
        if (entries_.size() != kSample || read <= 0 || fileBytes <= read) return;
        const double lines = 1.1 * kSample * static_cast<double>(fileBytes) / static_cast<double>(read);
        if (lines >= static_cast<double>(std::size_t{1} << 31)) return;
        try {
            entries_.reserve(static_cast<std::size_t>(lines));
        } catch (const std::bad_alloc&) {
        }
    }

    // False when there is no room for the text or the line, or too many lines to number.
    bool Add(const OrvDateTime* d)
    {
        Entry e{};
        if (!UtcReading(d, &e.seconds, &e.nanos)) return false;
        if (entries_.size() >= UINT32_MAX) return false;
        e.order = static_cast<OrvUint32>(entries_.size());
        if (!Pack(d, &e.text)) {
            const std::optional<std::string> text = TextOf(d);
            if (!text) return false;
            e.text = kSpelled | spelled_.size();
            spelled_.push_back(*text);
        }
        entries_.push_back(e);
        return true;
    }

    // Sorts, keeps the first of every run of equal values and appends their texts,
    // ascending or (reverse) descending.
    void WriteUnique(bool reverse, std::string* out)
    {
        std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
            if (a.seconds != b.seconds) return a.seconds < b.seconds;
            if (a.nanos != b.nanos) return a.nanos < b.nanos;
            return a.order < b.order;
        });
        auto same = [](const Entry& a, const Entry& b) { return a.seconds == b.seconds && a.nanos == b.nanos; };
        const auto end = std::unique(entries_.begin(), entries_.end(), same); // keeps the first of each run
        std::size_t bytes = 0;
        for (auto it = entries_.begin(); it != end; ++it)
            bytes += (it->text & kSpelled) != 0 ? spelled_[it->text & ~kSpelled].size() + 1 : 16 + (it->text & 1);
        out->reserve(out->size() + bytes);
        auto put = [&](const Entry& e) {
            if ((e.text & kSpelled) == 0) return AppendPacked(e.text, out);
            *out += spelled_[e.text & ~kSpelled];
            *out += '\n';
        };
        if (reverse) {
            for (auto it = end; it != entries_.begin();) put(*--it);
        } else {
            for (auto it = entries_.begin(); it != end; ++it) put(*it);
        }
    }

private:
    std::vector<Entry> entries_;
    std::vector<std::string> spelled_;
};

// The size of a regular file, or 0.
OrvInt64 FileSize(std::FILE* f)
{
    struct stat st {};
    if (fstat(fileno(f), &st) != 0 || !S_ISREG(st.st_mode)) return 0;
    return static_cast<OrvInt64>(st.st_size);
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

    // Every good line is kept as an Entry and sorted once at the end; equal values are
    // one, the first of them written, as an ordered set of the values would have them.
    try {
        Entries entries;
        const OrvInt64 fileBytes = FileSize(file.get());
        OrvInt64 read = 0;
        LineReader lines(file.get());
        std::size_t lineNumber = 0;
        std::size_t bad = 0;
        while (lines.Next()) {
            ++lineNumber;
            read += static_cast<OrvInt64>(lines.Length()) + 1;
            if (lines.Blank()) continue;
            DateTime value;
            if (ReadDateTimeLine(inv, lineNumber, lines.Kept(), lines.Length(), zone, &value) != kOk) {
                inv.ReportNow();
                ++bad;
                continue;
            }
            if (!entries.Add(value.get())) return inv.Internal("out of memory");
            entries.Expect(fileBytes, read);
        }
        if (lines.Failed()) return inv.Refuse("FILE", path, "a file that can be read");
        entries.WriteUnique(reverse, &inv.Out());
        if (bad == 0) return kOk;
        // The good lines are still written; the status says that some were skipped.
        return inv.Skipped("skipped " + std::to_string(bad) + " bad line" + (bad == 1 ? "" : "s") + " of " +
                           std::to_string(lineNumber));
    } catch (const std::bad_alloc&) {
        return inv.Internal("out of memory");
    }
}

} // namespace orvcal
