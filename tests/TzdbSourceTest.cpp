// Where database zones come from: the embedded copy against the folder it was built
// from, the automatic order (TZDIR, system folder, embedded copy), the explicit
// choice, the id lists of both sources and the database version.
#include "Timezone/TzdbDatabase.hpp"
#include "Timezone/TzdbEmbedded.hpp"
#include "Timezone/TzdbZone.hpp"
#include "support/CountingAllocator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Table = std::vector<std::pair<OrvTime, OrvTime>>;

constexpr const char* kBuildFolder = ORV_TZDATA_DIR; // the folder the embedded copy was made from

class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : name_(name)
    {
        if (const char* old = std::getenv(name)) old_ = old;
        Set(value);
    }
    ~ScopedEnv() { Set(old_ ? old_->c_str() : nullptr); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    void Set(const char* v) { v != nullptr ? setenv(name_.c_str(), v, 1) : unsetenv(name_.c_str()); }
    std::string name_;
    std::optional<std::string> old_;
};

// Each test starts and ends on the automatic choice, with a scratch folder holding a
// copy of one real zone as "My/Zone" and the given tzdata.zi first line.
class TzdbSource : public ::testing::Test {
protected:
    void SetUp() override
    {
        char tmpl[] = "/tmp/orv-tzsource-XXXXXX";
        ASSERT_NE(mkdtemp(tmpl), nullptr);
        scratch_ = tmpl;
        fs::create_directories(scratch_ + "/My");
        if (!fs::exists(std::string(kBuildFolder) + "/Europe/Berlin"))
            GTEST_SKIP() << "no time-zone database at " << kBuildFolder << " (install tzdata)";
        fs::copy_file(std::string(kBuildFolder) + "/Europe/Berlin", scratch_ + "/My/Zone");
    }
    void TearDown() override
    {
        EXPECT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Automatic, nullptr));
        fs::remove_all(scratch_);
    }
    static bool HaveEmbedded() { return orv::tzdb::HaveEmbeddedDatabase(); }
    std::string scratch_;
};

std::string InUse(OrvTzdbSource expect)
{
    char name[ORV_TZDB_FOLDER_MAX + 1];
    EXPECT_EQ(OrvTzdbGetSourceInUse(name, sizeof name), expect);
    return name;
}

std::vector<std::string> Ids(bool* readable = nullptr)
{
    std::vector<std::string> ids;
    const OrvBool ok = OrvTzdbTimezoneForEachId(
        [](const char* id, OrvVoidPtr user) -> OrvBool {
            static_cast<std::vector<std::string>*>(user)->emplace_back(id);
            return ORV_TRUE;
        },
        &ids);
    if (readable != nullptr) *readable = ok != ORV_FALSE;
    return ids;
}

// The zone's whole table through the current source; nothing when it does not build.
std::optional<Table> TableOf(const char* id)
{
    OrvTimezone tz;
    if (OrvTzdbTimezoneConstruct(&tz, id, OrvAllocatorGetDefault()) == nullptr) return std::nullopt;
    Table t(orv::tzdb::TransitionCount(&tz));
    for (std::size_t i = 0; i < t.size(); ++i) EXPECT_TRUE(orv::tzdb::TransitionAt(&tz, i, &t[i].first, &t[i].second));
    OrvTimezoneDestruct(&tz);
    return t;
}

TEST_F(TzdbSource, TheEmbeddedCopyAnswersLikeItsFolder)
{
    if (!HaveEmbedded()) GTEST_SKIP() << "built with ORV_EMBED_TZDATA off";
    ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Folder, kBuildFolder)) << kBuildFolder;
    const std::string folderVersion = OrvTzdbGetVersion();
    std::vector<std::string> folderIds = Ids();
    ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Embedded, nullptr));
    if (folderVersion != OrvTzdbGetVersion())
        GTEST_SKIP() << kBuildFolder << " changed since the build (" << folderVersion << ")";
    const std::vector<std::string> embeddedIds = Ids();
    ASSERT_TRUE(std::is_sorted(embeddedIds.begin(), embeddedIds.end())); // strcmp order
    std::sort(folderIds.begin(), folderIds.end());
    EXPECT_TRUE(std::includes(folderIds.begin(), folderIds.end(), embeddedIds.begin(), embeddedIds.end()));

    // Every folder id: the same table from both sources, or, when the copy left it
    // out, a file the folder refuses too.
    for (const std::string& id : folderIds) {
        ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Embedded, nullptr));
        const std::optional<Table> embedded = TableOf(id.c_str());
        ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Folder, kBuildFolder));
        const std::optional<Table> folder = TableOf(id.c_str());
        const bool listed = std::binary_search(embeddedIds.begin(), embeddedIds.end(), id);
        EXPECT_EQ(embedded.has_value(), listed) << id;
        if (listed) {
            EXPECT_EQ(embedded, folder) << id;
        } else {
            EXPECT_FALSE(folder.has_value()) << id;
        }
    }
    EXPECT_GT(embeddedIds.size(), 300U);
}

TEST_F(TzdbSource, AutomaticOrderIsTzdirThenSystemFolderThenEmbedded)
{
    using orv::tzdb::AutomaticSource;
    const char* missing = "/nonexistent/orv-zoneinfo";
    EXPECT_EQ(AutomaticSource(missing, "/", true), ORV_TZDBSOURCE_Folder); // TZDIR, even missing
    EXPECT_EQ(AutomaticSource(nullptr, "/", true), ORV_TZDBSOURCE_Folder);
    EXPECT_EQ(AutomaticSource("", missing, true), ORV_TZDBSOURCE_Embedded);
    EXPECT_EQ(AutomaticSource(nullptr, missing, false), ORV_TZDBSOURCE_Folder);

    {
        ScopedEnv tzdir("TZDIR", nullptr);
        const bool system = fs::is_directory(orv::tzdb::kSystemFolder);
        EXPECT_EQ(InUse(system || !HaveEmbedded() ? ORV_TZDBSOURCE_Folder : ORV_TZDBSOURCE_Embedded),
                  system || !HaveEmbedded() ? orv::tzdb::kSystemFolder : "embedded");
    }
    {
        ScopedEnv tzdir("TZDIR", scratch_.c_str());
        EXPECT_EQ(InUse(ORV_TZDBSOURCE_Folder), scratch_);
        EXPECT_EQ(Ids(), std::vector<std::string>{"My/Zone"});
        EXPECT_FALSE(TableOf("Europe/Berlin").has_value()); // never taken from another source
    }
    {
        ScopedEnv tzdir("TZDIR", missing);
        EXPECT_EQ(InUse(ORV_TZDBSOURCE_Folder), missing);
        bool readable = true;
        EXPECT_TRUE(Ids(&readable).empty());
        EXPECT_FALSE(readable);
        EXPECT_FALSE(TableOf("UTC").has_value());
        EXPECT_STREQ(OrvTzdbGetVersion(), "");
    }
}

TEST_F(TzdbSource, ExplicitChoice)
{
    ScopedEnv tzdir("TZDIR", "/nonexistent/orv-zoneinfo"); // overridden by any explicit choice
    const std::string tooLong(ORV_TZDB_FOLDER_MAX + 1, 'a');
    for (const char* folder : {static_cast<const char*>(nullptr), "", "/nonexistent/orv-zoneinfo", tooLong.c_str(),
                               "/etc/hostname"}) {
        EXPECT_FALSE(OrvTzdbSetSource(ORV_TZDBSOURCE_Folder, folder)) << (folder ? folder : "null");
    }
    EXPECT_FALSE(OrvTzdbSetSource(static_cast<OrvTzdbSource>(3), nullptr));
    EXPECT_EQ(OrvTzdbGetSource(), ORV_TZDBSOURCE_Automatic); // refusals change nothing

    ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Folder, scratch_.c_str()));
    EXPECT_EQ(OrvTzdbGetSource(), ORV_TZDBSOURCE_Folder);
    EXPECT_EQ(InUse(ORV_TZDBSOURCE_Folder), scratch_);
    char cut[5];
    EXPECT_EQ(OrvTzdbGetSourceInUse(cut, sizeof cut), ORV_TZDBSOURCE_Folder);
    EXPECT_STREQ(cut, "/tmp");
    EXPECT_EQ(OrvTzdbGetSourceInUse(nullptr, 0), ORV_TZDBSOURCE_Folder);
    EXPECT_EQ(Ids(), std::vector<std::string>{"My/Zone"});
    {
        ScopedEnv tz("TZ", "My/Zone");
        OrvTimezone local;
        ASSERT_NE(OrvTzdbTimezoneConstructLocal(&local, OrvAllocatorGetDefault()), nullptr);
        EXPECT_STREQ(OrvTzdbTimezoneGetId(&local), "My/Zone");
        OrvTimezoneDestruct(&local);
    }

    if (!HaveEmbedded()) {
        EXPECT_FALSE(OrvTzdbSetSource(ORV_TZDBSOURCE_Embedded, nullptr));
        EXPECT_EQ(OrvTzdbGetSource(), ORV_TZDBSOURCE_Folder);
        return;
    }
    ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Embedded, "ignored"));
    EXPECT_EQ(InUse(ORV_TZDBSOURCE_Embedded), "embedded");
    orv::test::CountingAllocator alloc;
    OrvTimezone tz;
    ASSERT_NE(OrvTzdbTimezoneConstruct(&tz, "Europe/Berlin", alloc.get()), nullptr);
    EXPECT_EQ(OrvTimezoneGetOffset(&tz, 1719792000 * ORV_TIME_NANOSECONDS_PER_SECOND), // 2024-07-01
              2 * ORV_TIME_NANOSECONDS_PER_HOUR);
    OrvTimezoneDestruct(&tz);
    alloc.failAll(true);
    EXPECT_EQ(OrvTzdbTimezoneConstruct(&tz, "Europe/Berlin", alloc.get()), nullptr);
    EXPECT_EQ(alloc.liveBlocks(), 0U);
    EXPECT_EQ(alloc.badDeallocations(), 0U);
    for (const char* id : {"My/Zone", "Europe/Berli", "Europe/Berlin/x", "zone.tab", "posixrules", "right/UTC"})
        EXPECT_FALSE(TableOf(id).has_value()) << id;

    // The local zone: TZ's id, else the id /etc/localtime links to, both from the copy.
    OrvTimezone local;
    {
        ScopedEnv tz("TZ", "Asia/Tokyo");
        ASSERT_NE(OrvTzdbTimezoneConstructLocal(&local, OrvAllocatorGetDefault()), nullptr);
        EXPECT_STREQ(OrvTzdbTimezoneGetId(&local), "Asia/Tokyo");
        OrvTimezoneDestruct(&local);
    }
    ScopedEnv noTz("TZ", nullptr);
    std::error_code ec;
    const std::string target = fs::read_symlink("/etc/localtime", ec).string();
    const std::size_t at = target.find("zoneinfo/");
    ASSERT_NE(OrvTzdbTimezoneConstructLocal(&local, OrvAllocatorGetDefault()), nullptr);
    if (!ec && at != std::string::npos && TableOf(target.c_str() + at + 9).has_value()) {
        EXPECT_EQ(OrvTzdbTimezoneGetId(&local), target.substr(at + 9));
    }
    OrvTimezoneDestruct(&local);
}

TEST_F(TzdbSource, Version)
{
    struct VersionCase {
        const char* firstLine; // of tzdata.zi; null: no file
        const char* version;
    };
    for (const VersionCase& c : {VersionCase{nullptr, ""}, {"# version 2099z\n# more", "2099z"},
                                 {"# version 2099z", "2099z"}, {"# version 2099 z\n", ""},
                                 {"# Version 2099z\n", ""}, {"# version \n", ""}}) {
        if (c.firstLine != nullptr) std::ofstream(scratch_ + "/tzdata.zi", std::ios::trunc) << c.firstLine;
        ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Folder, scratch_.c_str()));
        EXPECT_STREQ(OrvTzdbGetVersion(), c.version) << (c.firstLine ? c.firstLine : "no tzdata.zi");
    }
    if (HaveEmbedded() && fs::exists(std::string(kBuildFolder) + "/tzdata.zi")) {
        ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Embedded, nullptr));
        const std::string version = OrvTzdbGetVersion(); // "2025b"
        EXPECT_TRUE(version.size() >= 5 && std::all_of(version.begin(), version.begin() + 4, ::isdigit) &&
                    std::all_of(version.begin() + 4, version.end(), ::islower))
            << version;
    }
}

// The choice changes while other threads look zones up: each lookup sees one source,
// whole (the name is never a mix of the two).
TEST_F(TzdbSource, ChangingTheChoiceWhileOthersLookUp)
{
    const std::string other = scratch_ + "/My";
    std::atomic<bool> stop{false};
    std::atomic<int> torn{0};
    ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Folder, scratch_.c_str()));
    std::vector<std::thread> readers;
    for (int r = 0; r < 2; ++r) {
        readers.emplace_back([&] {
            while (!stop.load()) {
                char name[ORV_TZDB_FOLDER_MAX + 1];
                OrvTzdbGetSourceInUse(name, sizeof name);
                if (name != scratch_ && name != other) torn.fetch_add(1);
            }
        });
    }
    for (int i = 0; i < 20000; ++i) ASSERT_TRUE(OrvTzdbSetSource(ORV_TZDBSOURCE_Folder, (i % 2 ? other : scratch_).c_str()));
    stop.store(true);
    for (std::thread& t : readers) t.join();
    EXPECT_EQ(torn.load(), 0);
}

} // namespace
