// The zone database: the source of each lookup (explicit choice, TZDIR, the system
// folder or the embedded copy), zone files read through the caller's allocator, ids
// checked so that none leaves the folder, the local zone, the id walk and the version.
//
// The explicit choice is shared by all threads without a lock the C++ runtime would
// have to provide: a sequence counter guards the choice and its folder path. A writer
// makes the counter odd, writes, then makes it even again; a reader copies the choice
// and retries when the counter was odd or moved while it copied. Every access is
// atomic, so readers racing a writer see either the old or the new choice, whole.
#include "Timezone/TzdbDatabase.hpp"

#include "Timezone/PosixRule.hpp"
#include "Timezone/TzdbEmbedded.hpp"
#include "Timezone/TzdbZone.hpp"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orv::tzdb {

namespace {

// A zone file is a few kilobytes; anything near this is not one.
constexpr off_t kMaxFileSize = 1 << 20;

static_assert(ORV_TZDB_FOLDER_MAX + 1 + ORV_TZDB_ID_MAX + 1 <= PATH_MAX);

// The source of one lookup, fixed at its start.
struct Source {
    bool embedded = false;
    bool usable = true; // false for a folder path longer than ORV_TZDB_FOLDER_MAX
    char folder[ORV_TZDB_FOLDER_MAX + 1] = {};
};

constinit std::atomic<unsigned> gSequence{0};
constinit std::atomic<int> gChoice{ORV_TZDBSOURCE_Automatic};
constinit std::atomic<char> gFolder[ORV_TZDB_FOLDER_MAX + 1] = {};
static_assert(std::atomic<unsigned>::is_always_lock_free && std::atomic<int>::is_always_lock_free &&
              std::atomic<char>::is_always_lock_free); // no atomics library needed

// Copies the explicit choice (and, for a folder, its path into folder).
int ReadChoice(char* folder)
{
    for (;;) {
        const unsigned before = gSequence.load(std::memory_order_acquire);
        if ((before & 1U) != 0) {
            sched_yield();
            continue;
        }
        const int choice = gChoice.load(std::memory_order_relaxed);
        if (choice == ORV_TZDBSOURCE_Folder) {
            for (std::size_t i = 0; i <= ORV_TZDB_FOLDER_MAX; ++i) {
                folder[i] = gFolder[i].load(std::memory_order_relaxed);
                if (folder[i] == '\0') break;
            }
            folder[ORV_TZDB_FOLDER_MAX] = '\0';
        }
        std::atomic_thread_fence(std::memory_order_acquire);
        if (gSequence.load(std::memory_order_relaxed) == before) return choice;
    }
}

// folder fits ORV_TZDB_FOLDER_MAX (or is null).
void WriteChoice(int choice, const char* folder)
{
    unsigned seq = gSequence.load(std::memory_order_relaxed);
    for (;;) {
        if ((seq & 1U) == 0 &&
            gSequence.compare_exchange_weak(seq, seq + 1, std::memory_order_acquire, std::memory_order_relaxed))
            break;
        if ((seq & 1U) != 0) {
            sched_yield();
            seq = gSequence.load(std::memory_order_relaxed);
        }
    }
    std::atomic_thread_fence(std::memory_order_release);
    gChoice.store(choice, std::memory_order_relaxed);
    std::size_t i = 0;
    for (; folder != nullptr && folder[i] != '\0'; ++i) gFolder[i].store(folder[i], std::memory_order_relaxed);
    gFolder[i].store('\0', std::memory_order_relaxed);
    gSequence.store(seq + 2, std::memory_order_release);
}

bool IsDirectory(const char* path)
{
    struct stat st {};
    return stat(path, &st) == 0 && S_ISDIR(st.st_mode);
}

void UseFolder(Source* s, const char* folder)
{
    const std::size_t len = std::strlen(folder);
    s->embedded = false;
    s->usable = len <= ORV_TZDB_FOLDER_MAX;
    const std::size_t kept = s->usable ? len : ORV_TZDB_FOLDER_MAX;
    std::memcpy(s->folder, folder, kept);
    s->folder[kept] = '\0';
}

void Resolve(Source* s)
{
    const int choice = ReadChoice(s->folder);
    if (choice == ORV_TZDBSOURCE_Folder) {
        s->embedded = false;
        s->usable = true;
        return;
    }
    if (choice == ORV_TZDBSOURCE_Embedded) {
        s->embedded = true;
        return;
    }
    const char* tzdir = std::getenv("TZDIR");
    if (AutomaticSource(tzdir, kSystemFolder, HaveEmbeddedDatabase()) == ORV_TZDBSOURCE_Embedded) {
        s->embedded = true;
        return;
    }
    UseFolder(s, (tzdir != nullptr && tzdir[0] != '\0') ? tzdir : kSystemFolder);
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
// Into resolved (PATH_MAX bytes): path with links followed, when it lies under the
// folder root (already resolved).
bool ResolveInside(const char* path, const char* root, char* resolved)
{
    if (realpath(path, resolved) == nullptr) return false;
    const std::size_t rootLen = std::strlen(root);
    return std::strncmp(resolved, root, rootLen) == 0 && (resolved[rootLen] == '/' || (rootLen == 1 && root[0] == '/'));
}

bool ResolvesInside(const char* path, const char* root)
{
    char resolved[PATH_MAX];
    return ResolveInside(path, root, resolved);
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

OrvTzdbSource AutomaticSource(const char* tzdir, const char* systemFolder, bool haveEmbedded)
{
    if (tzdir != nullptr && tzdir[0] != '\0') return ORV_TZDBSOURCE_Folder;
    if (IsDirectory(systemFolder) || !haveEmbedded) return ORV_TZDBSOURCE_Folder;
    return ORV_TZDBSOURCE_Embedded;
}

bool SetSource(OrvTzdbSource source, const char* folder)
{
    switch (source) {
    case ORV_TZDBSOURCE_Automatic: WriteChoice(source, nullptr); return true;
    case ORV_TZDBSOURCE_Embedded:
        if (!HaveEmbeddedDatabase()) return false;
        WriteChoice(source, nullptr);
        return true;
    case ORV_TZDBSOURCE_Folder:
        if (folder == nullptr || folder[0] == '\0' || std::strlen(folder) > ORV_TZDB_FOLDER_MAX ||
            !IsDirectory(folder))
            return false;
        WriteChoice(source, folder);
        return true;
    }
    return false;
}

OrvTzdbSource GetSource() { return static_cast<OrvTzdbSource>(gChoice.load(std::memory_order_acquire)); }

OrvTzdbSource SourceInUse(char* name, std::size_t size)
{
    Source s;
    Resolve(&s);
    if (name != nullptr && size != 0) {
        const char* text = s.embedded ? "embedded" : s.folder;
        const std::size_t len = std::min(std::strlen(text), size - 1);
        std::memcpy(name, text, len);
        name[len] = '\0';
    }
    return s.embedded ? ORV_TZDBSOURCE_Embedded : ORV_TZDBSOURCE_Folder;
}

namespace {

OrvTimezone* ConstructFromSource(const Source& s, OrvTimezone* tz, const char* zoneId, OrvAllocator* a)
{
    if (s.embedded) {
        const unsigned char* bytes = nullptr;
        std::size_t size = 0;
        return FindEmbeddedZone(zoneId, &bytes, &size) ? ConstructFromBytes(tz, bytes, size, zoneId, a) : nullptr;
    }
    char path[PATH_MAX];
    char resolved[PATH_MAX];
    char root[PATH_MAX];
    if (!s.usable || !JoinPath(path, s.folder, zoneId)) return nullptr;
    // Links inside the database are followed, but the file must stay inside it.
    if (realpath(s.folder, root) == nullptr || !ResolveInside(path, root, resolved)) return nullptr;
    return ConstructFromFile(tz, resolved, zoneId, a);
}

bool HasZone(const Source& s, const char* zoneId)
{
    if (s.embedded) {
        const unsigned char* bytes = nullptr;
        std::size_t size = 0;
        return FindEmbeddedZone(zoneId, &bytes, &size);
    }
    char path[PATH_MAX];
    struct stat st {};
    return s.usable && JoinPath(path, s.folder, zoneId) && stat(path, &st) == 0;
}

} // namespace

OrvTimezone* ConstructFromDatabase(OrvTimezone* tz, const char* zoneId, OrvAllocator* a)
{
    Source s;
    Resolve(&s);
    return ConstructFromSource(s, tz, zoneId, a);
}

OrvTimezone* ConstructLocalZone(OrvTimezone* tz, OrvAllocator* a)
{
    Source s;
    Resolve(&s);
    const char* env = std::getenv("TZ");
    if (env != nullptr && env[0] == ':') ++env;
    if (env != nullptr && env[0] != '\0') {
        // Once TZ names something usable, its failures are the result: falling back to
        // another zone would hide them.
        struct stat st {};
        if (env[0] == '/') {
            if (stat(env, &st) == 0) return ConstructFromFile(tz, env, env, a);
        } else if (IsValidZoneId(env) && HasZone(s, env)) {
            return ConstructFromSource(s, tz, env, a);
        } else {
            PosixRule rule;
            if (ParsePosixRule(env, std::strlen(env), &rule)) return ConstructFromRule(tz, env, a);
        }
    }
    // Name the zone after the database file /etc/localtime links to, when it does.
    const char* localtime = "/etc/localtime";
    char target[PATH_MAX] = {};
    const char* id = "localtime";
    bool linked = false;
    const ssize_t len = readlink(localtime, target, sizeof target - 1);
    if (len > 0) {
        target[len] = '\0';
        const char* marker = std::strstr(target, "zoneinfo/");
        linked = marker != nullptr && IsValidZoneId(marker + 9);
        if (linked) id = marker + 9;
    }
    // The embedded copy answers for the id the link names, also when the link leads
    // nowhere (a machine without a database folder).
    if (s.embedded && linked) {
        const char* bare = std::strncmp(id, "posix/", 6) == 0 ? id + 6 : id;
        if (HasZone(s, bare)) return ConstructFromSource(s, tz, bare, a);
    }
    struct stat st {};
    if (stat(localtime, &st) != 0) return ConstructFromRule(tz, "UTC0", a);
    return ConstructFromFile(tz, localtime, id, a);
}

bool ForEachZoneId(OrvTzdbIdCallback fn, OrvVoidPtr userData)
{
    Source s;
    Resolve(&s);
    if (s.embedded) {
        for (std::size_t i = 0, n = EmbeddedIdCount(); i < n; ++i) {
            if (fn(EmbeddedIdAt(i), userData) == ORV_FALSE) break;
        }
        return true;
    }
    if (!s.usable) return false;
    char path[PATH_MAX];
    const std::size_t dirLen = std::strlen(s.folder);
    std::memcpy(path, s.folder, dirLen + 1);
    char root[PATH_MAX];
    if (realpath(s.folder, root) == nullptr || !IsDirectory(root)) return false;
    WalkIds(path, dirLen, 0, 0, root, fn, userData);
    return true;
}

namespace {

// The version of this thread's last DatabaseVersion() call.
thread_local char tVersion[32];

// "# version 2025b" on the first line of the folder's tzdata.zi, into tVersion.
void ReadFolderVersion(const char* folder)
{
    tVersion[0] = '\0';
    char path[PATH_MAX];
    if (!JoinPath(path, folder, "tzdata.zi")) return;
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return;
    char head[64] = {};
    const ssize_t got = read(fd, head, sizeof head - 1);
    close(fd);
    constexpr char kPrefix[] = "# version ";
    constexpr std::size_t kPrefixLen = sizeof kPrefix - 1;
    if (got < static_cast<ssize_t>(kPrefixLen) || std::memcmp(head, kPrefix, kPrefixLen) != 0) return;
    std::size_t n = 0;
    for (const char* p = head + kPrefixLen; n + 1 < sizeof tVersion; ++p, ++n) {
        const char c = *p;
        const bool plain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '.' ||
                           c == '-' || c == '_';
        if (!plain) break;
        tVersion[n] = c;
    }
    const char end = head[kPrefixLen + n];
    tVersion[(end == '\n' || end == '\r' || end == '\0') ? n : 0] = '\0';
}

} // namespace

const char* DatabaseVersion()
{
    Source s;
    Resolve(&s);
    if (s.embedded) return EmbeddedVersion();
    if (!s.usable) return "";
    ReadFolderVersion(s.folder);
    return tVersion;
}

} // namespace orv::tzdb
