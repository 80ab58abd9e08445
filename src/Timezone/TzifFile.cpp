// TZif files: validation and decoding, no allocation.
//
// TZif layout (all integers big-endian):
//   header:  "TZif", version ('\0', '2', '3', '4'), 15 reserved bytes, then six 32-bit
//            counts: isutcnt, isstdcnt, leapcnt, timecnt, typecnt, charcnt
//   data:    timecnt transition times (4 bytes in the first block, 8 in the second),
//            timecnt type indexes (1 byte), typecnt types (utoff 4, isdst 1, abbr index 1),
//            charcnt abbreviation bytes, leapcnt leap records (time + 4), isstdcnt and
//            isutcnt indicator bytes
//   v2+:     a second header and data block with 8-byte times, then "\n" footer "\n"
#include "Timezone/TzifFile.hpp"

#include <algorithm>
#include <cstring>

namespace orv::tzdb {

namespace {

constexpr std::size_t kHeaderSize = 44;

std::uint32_t ReadBe32(const unsigned char* p)
{
    return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) | std::uint32_t{p[3]};
}

std::int64_t ReadBe64(const unsigned char* p)
{
    const std::uint64_t v = (std::uint64_t{ReadBe32(p)} << 32) | ReadBe32(p + 4);
    return static_cast<std::int64_t>(v);
}

} // namespace

std::int64_t TzifFile::TimeAt(std::uint32_t i) const
{
    const unsigned char* p = times + static_cast<std::size_t>(i) * static_cast<std::size_t>(timeSize);
    return timeSize == 8 ? ReadBe64(p) : static_cast<std::int64_t>(static_cast<std::int32_t>(ReadBe32(p)));
}

namespace {

struct Header {
    int version;
    std::uint32_t isutcnt, isstdcnt, leapcnt, timecnt, typecnt, charcnt;
};

bool ReadHeader(const unsigned char* p, std::size_t avail, Header* h)
{
    if (avail < kHeaderSize || std::memcmp(p, "TZif", 4) != 0) return false;
    switch (p[4]) {
    case 0: h->version = 1; break;
    case '2': h->version = 2; break;
    case '3': h->version = 3; break;
    case '4': h->version = 4; break;
    default: return false;
    }
    h->isutcnt = ReadBe32(p + 20);
    h->isstdcnt = ReadBe32(p + 24);
    h->leapcnt = ReadBe32(p + 28);
    h->timecnt = ReadBe32(p + 32);
    h->typecnt = ReadBe32(p + 36);
    h->charcnt = ReadBe32(p + 40);
    return true;
}

constexpr std::uint64_t kBadBlock = UINT64_MAX;

// Bytes of the data block after a header, or kBadBlock when the counts are
// inconsistent. The sum is formed in 64 bits from 32-bit counts, so it cannot wrap.
std::uint64_t BlockSize(const Header& h, int timeSize)
{
    if (h.isutcnt != 0 && h.isutcnt != h.typecnt) return kBadBlock;
    if (h.isstdcnt != 0 && h.isstdcnt != h.typecnt) return kBadBlock;
    const std::uint64_t ts = static_cast<std::uint64_t>(timeSize);
    return h.timecnt * ts + h.timecnt + h.typecnt * std::uint64_t{6} + h.charcnt + h.leapcnt * (ts + 4) +
           h.isstdcnt + h.isutcnt;
}

// Checks the data block that follows a header and fills `out` from it.
TzifStatus ReadBlock(const Header& h, const unsigned char* p, int timeSize, TzifFile* out)
{
    // Real files have under 300 types and a few thousand transitions; the type
    // indexes are bytes, so more than 256 types cannot be addressed.
    if (h.typecnt == 0 || h.typecnt > 256 || h.charcnt == 0) return TzifStatus::BadFormat;
    out->timeCount = h.timecnt;
    out->typeCount = h.typecnt;
    out->timeSize = timeSize;
    out->times = p;
    out->typeIndexes = p + static_cast<std::size_t>(h.timecnt) * static_cast<std::size_t>(timeSize);
    const unsigned char* types = out->typeIndexes + h.timecnt;
    std::int64_t previous = INT64_MIN;
    for (std::uint32_t i = 0; i < h.timecnt; ++i) {
        const std::int64_t t = out->TimeAt(i);
        if (i > 0 && t <= previous) return TzifStatus::BadFormat;
        previous = t;
        if (out->typeIndexes[i] >= h.typecnt) return TzifStatus::BadFormat;
    }
    for (std::uint32_t i = 0; i < h.typecnt; ++i) {
        const unsigned char* ty = types + 6 * static_cast<std::size_t>(i);
        const auto utoff = static_cast<std::int32_t>(ReadBe32(ty));
        if (utoff < kMinUtOffset || utoff > kMaxUtOffset) return TzifStatus::BadFormat;
        if (ty[4] > 1 || ty[5] >= h.charcnt) return TzifStatus::BadFormat;
        out->utOffsets[i] = utoff;
        out->isDst[i] = ty[4];
        out->abbrIndexes[i] = ty[5];
    }
    out->chars = types + 6 * static_cast<std::size_t>(h.typecnt);
    out->charCount = h.charcnt;
    const unsigned char* indicators = types + 6 * static_cast<std::size_t>(h.typecnt) + h.charcnt +
                                      static_cast<std::size_t>(h.leapcnt) * static_cast<std::size_t>(timeSize + 4);
    for (std::uint32_t i = 0; i < h.isstdcnt + h.isutcnt; ++i) {
        if (indicators[i] > 1) return TzifStatus::BadFormat;
    }
    return h.leapcnt != 0 ? TzifStatus::LeapSeconds : TzifStatus::Ok;
}

} // namespace

TzifStatus ReadTzif(const unsigned char* bytes, std::size_t size, TzifFile* out)
{
    Header h1{};
    if (!ReadHeader(bytes, size, &h1)) return TzifStatus::BadFormat;
    const std::uint64_t block1 = BlockSize(h1, 4);
    const std::uint64_t avail1 = size - kHeaderSize;
    if (block1 > avail1) return TzifStatus::BadFormat;
    if (h1.version == 1) {
        if (block1 != avail1) return TzifStatus::BadFormat;
        out->version = 1;
        out->hasRule = false;
        return ReadBlock(h1, bytes + kHeaderSize, 4, out);
    }
    // Version 2 and later: skip the 32-bit block; the 64-bit one is authoritative.
    const unsigned char* p2 = bytes + kHeaderSize + block1;
    const std::size_t avail2 = static_cast<std::size_t>(avail1 - block1);
    Header h2{};
    if (!ReadHeader(p2, avail2, &h2) || h2.version != h1.version) return TzifStatus::BadFormat;
    const std::uint64_t block2 = BlockSize(h2, 8);
    if (block2 > avail2 - kHeaderSize) return TzifStatus::BadFormat;
    out->version = h2.version;
    const TzifStatus status = ReadBlock(h2, p2 + kHeaderSize, 8, out);
    if (status == TzifStatus::BadFormat) return status;

    // Footer: "\n" rule "\n", and nothing after it.
    const unsigned char* f = p2 + kHeaderSize + block2;
    const std::size_t footerSize = static_cast<std::size_t>(avail2 - kHeaderSize - block2);
    if (footerSize < 2 || f[0] != '\n' || f[footerSize - 1] != '\n') return TzifStatus::BadFormat;
    const char* text = reinterpret_cast<const char*>(f + 1);
    const std::size_t textLen = footerSize - 2;
    if (std::find(text, text + textLen, '\n') != text + textLen) return TzifStatus::BadFormat;
    out->hasRule = textLen != 0;
    if (out->hasRule && !ParsePosixRule(text, textLen, &out->rule)) return TzifStatus::BadFormat;
    return status;
}

} // namespace orv::tzdb
