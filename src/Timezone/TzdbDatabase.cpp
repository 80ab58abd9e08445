// The database folder: TZDIR or /usr/share/zoneinfo, zone files read through the
// caller's allocator, ids checked so that none leaves the folder, the local zone.
#include "Timezone/TzdbDatabase.hpp"

#include "Timezone/PosixRule.hpp"
#include "Timezone/TzdbZone.hpp"

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orv::tzdb {

namespace {

// A zone file is a few kilobytes; anything near this is not one.
constexpr off_t kMaxFileSize = 1 << 20;

const char* DatabaseDir()
{
    const char* dir = std::getenv("TZDIR");
    return (dir != nullptr && dir[0] != '\0') ? dir : "/usr/share/zoneinfo";
}

// Reads the regular file at path with the allocator and builds the zone from it.
OrvTimezone* ConstructFromFile(OrvTimezone* tz, const char* path, const char* id, OrvAllocator* a)
{
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return nullptr;
    struct stat st {};
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || st.st_size <= 0 || st.st_size > kMaxFileSize) {
        close(fd);
        return nullptr;
    }
    const auto size = static_cast<std::size_t>(st.st_size);
    auto* bytes = static_cast<unsigned char*>(OrvAllocatorAllocate(a, size));
    if (bytes == nullptr) {
        close(fd);
        return nullptr;
    }
    std::size_t got = 0;
    while (got < size) {
        const ssize_t r = read(fd, bytes + got, size - got);
        if (r <= 0) break;
        got += static_cast<std::size_t>(r);
    }
    close(fd);
    OrvTimezone* result = got == size ? ConstructFromBytes(tz, bytes, size, id, a) : nullptr;
    OrvAllocatorDeallocate(a, bytes, size);
    return result;
}

// dir + "/" + rel into out (PATH_MAX bytes); false when it does not fit.
bool JoinPath(char* out, const char* dir, const char* rel)
{
    const std::size_t dl = std::strlen(dir);
    const std::size_t rl = std::strlen(rel);
    if (dl + 1 + rl + 1 > PATH_MAX) return false;
    std::memcpy(out, dir, dl);
    out[dl] = '/';
    std::memcpy(out + dl + 1, rel, rl + 1);
    return true;
}

bool StartsWithTzif(const char* path)
{
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    char magic[4] = {};
    const ssize_t r = read(fd, magic, sizeof magic);
    close(fd);
    return r == static_cast<ssize_t>(sizeof magic) && std::memcmp(magic, "TZif", 4) == 0;
}

// True when path, links followed, is a file under the folder root (already resolved).
bool ResolvesInside(const char* path, const char* root)
{
    char resolved[PATH_MAX];
    if (realpath(path, resolved) == nullptr) return false;
    const std::size_t rootLen = std::strlen(root);
    return std::strncmp(resolved, root, rootLen) == 0 && (resolved[rootLen] == '/' || (rootLen == 1 && root[0] == '/'));
}

// Walks dir/rel (rel empty at the top); false when fn asked to stop.
bool WalkIds(char* path, std::size_t dirLen, std::size_t relLen, int depth, const char* root, OrvTzdbIdCallback fn,
             OrvVoidPtr user)
{
    DIR* d = opendir(path);
    if (d == nullptr) return true;
    bool goOn = true;
    while (goOn) {
        const dirent* e = readdir(d);
        if (e == nullptr) break;
        const char* name = e->d_name;
        if (name[0] == '.') continue;
        if (depth == 0 && (std::strcmp(name, "posix") == 0 || std::strcmp(name, "right") == 0 ||
                           std::strcmp(name, "localtime") == 0 || std::strcmp(name, "posixrules") == 0))
            continue;
        const std::size_t nameLen = std::strlen(name);
        const std::size_t curLen = relLen == 0 ? dirLen : dirLen + 1 + relLen; // path's length now
        const std::size_t childRel = relLen == 0 ? nameLen : relLen + 1 + nameLen;
        if (curLen + 1 + nameLen + 1 > PATH_MAX || childRel > ORV_TZDB_ID_MAX) continue;
        path[curLen] = '/';
        std::memcpy(path + curLen + 1, name, nameLen + 1);
        struct stat st {};
        if (stat(path, &st) == 0) {
            if (S_ISDIR(st.st_mode)) {
                if (depth < 8) goOn = WalkIds(path, dirLen, childRel, depth + 1, root, fn, user);
            } else if (S_ISREG(st.st_mode) && ResolvesInside(path, root) && StartsWithTzif(path)) {
                goOn = fn(path + dirLen + 1, user) != ORV_FALSE;
            }
        }
        path[curLen] = '\0';
    }
    closedir(d);
    return goOn;
}

} // namespace

bool IsValidZoneId(const char* id)
{
    if (id == nullptr || id[0] == '\0' || id[0] == '/') return false;
    std::size_t componentStart = 0;
    std::size_t i = 0;
    for (;; ++i) {
        const auto c = static_cast<unsigned char>(id[i]);
        if (i > ORV_TZDB_ID_MAX) return false;
        if (c == '/' || c == '\0') {
            const std::size_t len = i - componentStart;
            if (len == 0) return false;
            if (id[componentStart] == '.' && (len == 1 || (len == 2 && id[componentStart + 1] == '.'))) return false;
            if (c == '\0') return true;
            componentStart = i + 1;
        } else if (c < 0x20 || c == 0x7f) {
            return false;
        }
    }
}

OrvTimezone* ConstructFromDatabase(OrvTimezone* tz, const char* zoneId, OrvAllocator* a)
{
    char path[PATH_MAX];
    char resolved[PATH_MAX];
    char root[PATH_MAX];
    if (!JoinPath(path, DatabaseDir(), zoneId)) return nullptr;
    // Links inside the database are followed, but the file must stay inside it.
    if (realpath(DatabaseDir(), root) == nullptr || !ResolvesInside(path, root)) return nullptr;
    if (realpath(path, resolved) == nullptr) return nullptr;
    return ConstructFromFile(tz, resolved, zoneId, a);
}

OrvTimezone* ConstructLocalZone(OrvTimezone* tz, OrvAllocator* a)
{
    const char* env = std::getenv("TZ");
    if (env != nullptr && env[0] == ':') ++env;
    if (env != nullptr && env[0] != '\0') {
        // Once TZ names something usable, its failures are the result: falling back to
        // another zone would hide them.
        struct stat st {};
        char path[PATH_MAX];
        if (env[0] == '/') {
            if (stat(env, &st) == 0) return ConstructFromFile(tz, env, env, a);
        } else if (IsValidZoneId(env) && JoinPath(path, DatabaseDir(), env) && stat(path, &st) == 0) {
            return ConstructFromDatabase(tz, env, a);
        } else {
            PosixRule rule;
            if (ParsePosixRule(env, std::strlen(env), &rule)) return ConstructFromRule(tz, env, a);
        }
    }
    const char* localtime = "/etc/localtime";
    struct stat st {};
    if (stat(localtime, &st) != 0) return ConstructFromRule(tz, "UTC0", a);
    // Name the zone after the database file the link points to, when it does.
    char target[PATH_MAX] = {};
    const char* id = "localtime";
    const ssize_t len = readlink(localtime, target, sizeof target - 1);
    if (len > 0) {
        target[len] = '\0';
        const char* marker = std::strstr(target, "zoneinfo/");
        if (marker != nullptr && IsValidZoneId(marker + 9)) id = marker + 9;
    }
    return ConstructFromFile(tz, localtime, id, a);
}

bool ForEachZoneId(OrvTzdbIdCallback fn, OrvVoidPtr userData)
{
    char path[PATH_MAX];
    const char* dir = DatabaseDir();
    const std::size_t dirLen = std::strlen(dir);
    if (dirLen + 2 > PATH_MAX) return false;
    std::memcpy(path, dir, dirLen + 1);
    char root[PATH_MAX];
    if (realpath(dir, root) == nullptr) return false;
    struct stat st {};
    if (stat(root, &st) != 0 || !S_ISDIR(st.st_mode)) return false;
    WalkIds(path, dirLen, 0, 0, root, fn, userData);
    return true;
}

} // namespace orv::tzdb
