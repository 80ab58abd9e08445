// The sort verb of the orvcal tool, run in-process on arbitrary input: its line reader
// keeps a bounded start of each line and counts the rest. The first byte picks
// --reverse and --zone. The lines are split here independently (LF or CRLF, a
// byte-order mark before the first, a last line without newline) and each whole line
// read with the tool's own line reading; the output must be the accepted lines, one
// per instant, in order, and the status 1 exactly when a line that is not blank was
// refused.
#include "Common.h"
#include "FuzzSupport.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <map>
#include <string>
#include <vector>

namespace orvcal {
int RunSort(Invocation& inv);
}

namespace {

// The UTC reading of what the tool reads from line, in nanoseconds (dates outside the
// instant range have one too); false when the tool refuses the line.
bool Key(std::string_view line, const orvcal::Zone& zone, fuzz::Wide* key)
{
    orvcal::Invocation scratch("sort", "", {});
    orvcal::DateTime d;
    if (orvcal::ReadDateTimeLine(scratch, 1, line, line.size(), zone, &d) != orvcal::kOk) return false;
    *key = fuzz::CarriedLocal(*d.get()) - OrvDateTimeGetCurrentUTCOffset(d.get());
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::SilenceLog();
    if (size == 0) return 0;
    // The input as a file in memory, which the verb opens by its /proc path.
    static const int fd = memfd_create("fuzz_sort", 0);
    static const std::string path = "/proc/self/fd/" + std::to_string(fd);
    static const int devNull = open("/dev/null", O_WRONLY);
    const std::string input(reinterpret_cast<const char*>(data) + 1, size - 1);
    FUZZ_CHECK(fd >= 0 && ftruncate(fd, 0) == 0 &&
               pwrite(fd, input.data(), input.size(), 0) == static_cast<ssize_t>(input.size()));

    static const char* const kZones[] = {nullptr, "Europe/Berlin", "+05:30"};
    const char* zoneName = kZones[data[0] / 2 % 3];
    orvcal::Zone zone;
    std::string expected;
    FUZZ_CHECK(zoneName == nullptr || orvcal::ParseZoneArg(zoneName, &zone, &expected));
    const bool reverse = data[0] & 1;
    const std::string zoneArg = std::string("--zone=") + (zoneName != nullptr ? zoneName : "");
    std::vector<std::string_view> args = {path};
    if (reverse) args.push_back("--reverse");
    if (zoneName != nullptr) args.push_back(zoneArg);
    orvcal::Invocation inv("sort", "", args);
    const int saved = dup(2); // refused lines are reported on stderr
    dup2(devNull, 2);
    const int status = orvcal::RunSort(inv);
    dup2(saved, 2);
    close(saved);

    std::map<fuzz::Wide, int> keys;
    bool bad = false;
    for (std::size_t start = input.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0; start < input.size();) {
        const std::size_t end = std::min(input.find('\n', start), input.size());
        std::string_view line(input.data() + start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        fuzz::Wide key = 0;
        if (Key(line, zone, &key)) keys[key] = 0;
        else bad = bad || line.find_first_not_of(" \t") != std::string_view::npos;
        start = end + 1;
    }
    FUZZ_CHECK(status == (bad ? orvcal::kLinesSkipped : orvcal::kOk));
    std::vector<fuzz::Wide> want;
    for (const auto& [key, unused] : keys) want.push_back(key);
    if (reverse) std::reverse(want.begin(), want.end());
    // Written in the compact form: whole seconds, and (beyond four-digit years) text
    // the reader does not take back.
    const std::string& out = inv.Out();
    std::size_t i = 0;
    for (std::size_t start = 0; start < out.size(); ++i) {
        const std::size_t end = out.find('\n', start);
        FUZZ_CHECK(end != std::string::npos && i < want.size());
        const std::string_view line = std::string_view(out).substr(start, end - start);
        const fuzz::Wide second = ORV_TIME_NANOSECONDS_PER_SECOND;
        fuzz::Wide key = 0;
        if (Key(line, zone, &key)) FUZZ_CHECK(key == want[i] - ((want[i] % second) + second) % second);
        else FUZZ_CHECK(line[0] == '-' || !(line.size() == 15 || (line.size() == 16 && line.back() == 'Z')));
        start = end + 1;
    }
    FUZZ_CHECK(i == want.size());
    return 0;
}
