// Build-time packer of the library's embedded zone database.
//
//   orv_tzdb_pack <zoneinfo folder> <output .cpp>
//
// Walks the folder the way the library's folder walk does (TzdbDatabase.cpp: files
// that start with "TZif", links followed but kept inside the folder, no "posix/",
// "right/", "localtime" or "posixrules", ids up to 255 bytes, at most 8 levels) and
// writes one C++ source with:
//   - every zone re-wrapped as a minimal TZif file: for version 2 and later, a
//     version-1 header with an empty first block (one type, one abbreviation byte),
//     then the 64-bit header, data block and footer, the standard/UT indicators
//     dropped; a version-1 file is kept whole. The library's reader validates these
//     like any file;
//   - identical zones (links, and files with the same contents) stored once;
//   - the ids sorted by strcmp, each pointing at its zone, for a binary search;
//   - the database version from the first line of tzdata.zi ("# version 2025b"),
//     empty when the folder has none.
// Files that are not sound TZif or that carry leap seconds are left out (the reader
// refuses them from the folder too). Standard C++ only, so that the build needs
// nothing more than the compiler.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t kHeaderSize = 44;
constexpr std::size_t kIdMax = 255;
constexpr int kMaxDepth = 8;
constexpr std::uintmax_t kMaxFileSize = 1 << 20;

std::uint32_t Be32(const unsigned char* p)
{
    return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) | std::uint32_t{p[3]};
}

void PutBe32(Bytes* out, std::uint32_t v)
{
    for (int shift = 24; shift >= 0; shift -= 8) out->push_back(static_cast<unsigned char>(v >> shift));
}

struct Counts {
    char version; // '\0', '2', '3', '4'
    std::uint32_t isut, isstd, leap, time, type, chars;
};

std::optional<Counts> ReadHeader(const Bytes& b, std::size_t at)
{
    if (b.size() < at + kHeaderSize || b[at] != 'T' || b[at + 1] != 'Z' || b[at + 2] != 'i' || b[at + 3] != 'f')
        return std::nullopt;
    const char v = static_cast<char>(b[at + 4]);
    if (v != '\0' && v != '2' && v != '3' && v != '4') return std::nullopt;
    const unsigned char* p = b.data() + at + 20;
    return Counts{v, Be32(p), Be32(p + 4), Be32(p + 8), Be32(p + 12), Be32(p + 16), Be32(p + 20)};
}

std::uint64_t BlockSize(const Counts& c, std::uint64_t timeSize)
{
    return c.time * timeSize + c.time + c.type * std::uint64_t{6} + c.chars + c.leap * (timeSize + 4) + c.isstd +
           c.isut;
}

// The minimal form of a zone file, or nothing when it is not one the library reads.
std::optional<Bytes> Compact(const Bytes& file)
{
    const std::optional<Counts> h1 = ReadHeader(file, 0);
    if (!h1 || h1->leap != 0 || h1->type == 0 || h1->chars == 0) return std::nullopt;
    const std::uint64_t block1 = BlockSize(*h1, 4);
    if (block1 > file.size() - kHeaderSize) return std::nullopt;
    if (h1->version == '\0') {
        if (block1 != file.size() - kHeaderSize) return std::nullopt;
        return file;
    }
    const std::size_t at2 = kHeaderSize + static_cast<std::size_t>(block1);
    const std::optional<Counts> h2 = ReadHeader(file, at2);
    if (!h2 || h2->version != h1->version || h2->leap != 0 || h2->type == 0 || h2->chars == 0) return std::nullopt;
    const std::uint64_t block2 = BlockSize(*h2, 8);
    if (block2 > file.size() - at2 - kHeaderSize) return std::nullopt;
    const std::size_t data = at2 + kHeaderSize;
    const std::size_t kept = static_cast<std::size_t>(block2) - h2->isstd - h2->isut; // times .. abbreviations
    const std::size_t footer = data + static_cast<std::size_t>(block2);
    if (file.size() - footer < 2 || file[footer] != '\n' || file.back() != '\n' ||
        std::find(file.begin() + static_cast<std::ptrdiff_t>(footer) + 1, file.end() - 1, '\n') != file.end() - 1)
        return std::nullopt;

    Bytes out;
    const auto putHeader = [&out, version = static_cast<unsigned char>(h1->version)](std::uint32_t times,
                                                                                    std::uint32_t types,
                                                                                    std::uint32_t chars) {
        out.insert(out.end(), {'T', 'Z', 'i', 'f', version});
        out.insert(out.end(), 15, 0);
        for (std::uint32_t n : {0U, 0U, 0U, times, types, chars}) PutBe32(&out, n);
    };
    putHeader(0, 1, 1);
    out.insert(out.end(), 7, 0); // the one type {offset 0, not DST, abbreviation 0} and abbreviation ""
    putHeader(h2->time, h2->type, h2->chars);
    out.insert(out.end(), file.begin() + static_cast<std::ptrdiff_t>(data),
               file.begin() + static_cast<std::ptrdiff_t>(data + kept));
    out.insert(out.end(), file.begin() + static_cast<std::ptrdiff_t>(footer), file.end());
    return out;
}

bool ReadAll(const fs::path& path, Bytes* out)
{
    std::error_code ec;
    const std::uintmax_t size = fs::file_size(path, ec);
    if (ec || size == 0 || size > kMaxFileSize) return false;
    std::ifstream in(path, std::ios::binary);
    out->assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return in.good() || in.eof();
}

bool Inside(const fs::path& path, const std::string& root)
{
    std::error_code ec;
    const std::string resolved = fs::canonical(path, ec).string();
    return !ec && resolved.size() > root.size() && resolved.compare(0, root.size(), root) == 0 &&
           (resolved[root.size()] == '/' || root == "/");
}

bool IsIdText(const std::string& id)
{
    return std::none_of(id.begin(), id.end(), [](char c) {
        const auto u = static_cast<unsigned char>(c);
        return u < 0x20 || u == 0x7f;
    });
}

struct Pack {
    std::map<std::string, Bytes> files; // id -> compact zone
    std::size_t refused = 0;
};

void Walk(const fs::path& dir, const std::string& rel, int depth, const std::string& root, Pack* pack)
{
    std::error_code ec;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (name.empty() || name[0] == '.') continue;
        if (depth == 0 && (name == "posix" || name == "right" || name == "localtime" || name == "posixrules")) continue;
        const std::string id = rel.empty() ? name : rel + "/" + name;
        if (id.size() > kIdMax || !IsIdText(id)) continue;
        std::error_code sec;
        const fs::file_status st = fs::status(it->path(), sec); // links followed
        if (sec) continue;
        if (fs::is_directory(st)) {
            if (depth < kMaxDepth) Walk(it->path(), id, depth + 1, root, pack);
            continue;
        }
        Bytes bytes;
        if (!fs::is_regular_file(st) || !Inside(it->path(), root) || !ReadAll(it->path(), &bytes) ||
            bytes.size() < 4 || bytes[0] != 'T' || bytes[1] != 'Z' || bytes[2] != 'i' || bytes[3] != 'f')
            continue;
        if (std::optional<Bytes> zone = Compact(bytes)) {
            pack->files.emplace(id, std::move(*zone));
        } else {
            std::fprintf(stderr, "orv_tzdb_pack: %s: not a usable zone file, left out\n", id.c_str());
            ++pack->refused;
        }
    }
}

// "# version 2025b" on the first line of tzdata.zi; empty when absent or odd.
std::string Version(const fs::path& root)
{
    std::ifstream in(root / "tzdata.zi");
    std::string line;
    if (!std::getline(in, line)) return {};
    const std::string prefix = "# version ";
    if (line.compare(0, prefix.size(), prefix) != 0) return {};
    std::string v = line.substr(prefix.size());
    while (!v.empty() && (v.back() == '\r' || v.back() == ' ')) v.pop_back();
    const bool plain = !v.empty() && v.size() <= 31 && std::all_of(v.begin(), v.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '.' || c == '-' ||
               c == '_';
    });
    return plain ? v : std::string{};
}

// A string literal's contents: printable ASCII as is, the rest as octal escapes.
std::string Escaped(const std::string& text)
{
    std::string out;
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (u >= 0x20 && u < 0x7f && c != '"' && c != '\\' && c != '?') {
            out += c;
        } else {
            const char digits[] = {'\\', static_cast<char>('0' + (u >> 6)), static_cast<char>('0' + ((u >> 3) & 7)),
                                   static_cast<char>('0' + (u & 7))};
            out.append(digits, sizeof digits);
        }
    }
    return out;
}

void WriteNumbers(std::ostream& out, const std::vector<std::uint32_t>& values)
{
    for (std::size_t i = 0; i < values.size(); ++i) {
        out << values[i] << ',' << ((i % 16 == 15 || i + 1 == values.size()) ? "\n" : "");
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: orv_tzdb_pack <zoneinfo folder> <output.cpp>\n");
        return 2;
    }
    std::error_code ec;
    const fs::path folder = argv[1];
    const std::string root = fs::canonical(folder, ec).string();
    if (ec || !fs::is_directory(root)) {
        std::fprintf(stderr, "orv_tzdb_pack: %s is not a zone database folder\n", argv[1]);
        return 1;
    }
    Pack pack;
    Walk(folder, "", 0, root, &pack);
    if (pack.files.empty()) {
        std::fprintf(stderr, "orv_tzdb_pack: no zone files under %s\n", argv[1]);
        return 1;
    }

    // Zones in order of first appearance among the sorted ids; ids point at them.
    std::map<std::string, std::uint32_t> zoneIndex; // zone bytes as the key
    std::vector<const Bytes*> zones;
    std::vector<std::uint32_t> idTable; // name offset, zone, per id
    std::string names;
    for (const auto& [id, bytes] : pack.files) {
        const auto [it, added] =
            zoneIndex.emplace(std::string(bytes.begin(), bytes.end()), static_cast<std::uint32_t>(zones.size()));
        if (added) zones.push_back(&bytes);
        idTable.push_back(static_cast<std::uint32_t>(names.size()));
        idTable.push_back(it->second);
        names += id;
        names += '\0';
    }
    std::vector<std::uint32_t> starts{0};
    std::vector<std::uint32_t> data;
    for (const Bytes* z : zones) {
        data.insert(data.end(), z->begin(), z->end());
        starts.push_back(static_cast<std::uint32_t>(data.size()));
    }
    const std::string version = Version(root);

    std::ostringstream out;
    out << "// Generated by cmake/TzdbPack.cpp from " << root << " (version " << (version.empty() ? "unknown" : version)
        << "); do not edit.\n"
        << "#include \"Timezone/TzdbEmbedded.hpp\"\n\nnamespace orv::tzdb::embedded {\n\n"
        << "const char kVersion[] = \"" << version << "\";\n"
        << "const std::uint32_t kZoneCount = " << zones.size() << ";\n"
        << "const std::uint32_t kIdCount = " << pack.files.size() << ";\n\n"
        << "const std::uint32_t kZoneStarts[] = {\n";
    WriteNumbers(out, starts);
    out << "};\n\nconst IdEntry kIds[] = {\n";
    for (std::size_t i = 0; i < idTable.size(); i += 2) out << '{' << idTable[i] << ',' << idTable[i + 1] << "},\n";
    out << "};\n\nconst char kIdNames[] =\n";
    for (std::size_t at = 0; at < names.size();) {
        const std::size_t end = names.find('\0', at);
        out << "    \"" << Escaped(names.substr(at, end - at)) << (end + 1 == names.size() ? "\";\n" : "\\0\"\n");
        at = end + 1;
    }
    out << "\nconst unsigned char kZoneBytes[] = {\n";
    WriteNumbers(out, data);
    out << "};\n\n} // namespace orv::tzdb::embedded\n";

    const std::string target = argv[2];
    const std::string temp = target + ".tmp";
    {
        std::ofstream file(temp, std::ios::binary | std::ios::trunc);
        file << out.str();
        if (!file.flush()) {
            std::fprintf(stderr, "orv_tzdb_pack: cannot write %s\n", temp.c_str());
            return 1;
        }
    }
    fs::rename(temp, target, ec);
    if (ec) {
        std::fprintf(stderr, "orv_tzdb_pack: cannot write %s\n", target.c_str());
        return 1;
    }
    std::printf("orv_tzdb_pack: %zu ids, %zu zones, %zu bytes of zone data, version %s%s\n", pack.files.size(),
                zones.size(), data.size(), version.empty() ? "unknown" : version.c_str(),
                pack.refused != 0 ? " (some files left out)" : "");
    return 0;
}
