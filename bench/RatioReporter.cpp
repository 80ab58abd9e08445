#include "RatioReporter.h"

#include <cstdio>

namespace orv::bench {

void RatioReporter::ReportRuns(const std::vector<Run>& runs)
{
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
        const std::string name = run.benchmark_name();
        const std::size_t colon = name.find(':');
        if (colon == std::string::npos) continue;
        const std::size_t slash = name.find('/', colon);
        const std::string group = name.substr(0, colon) + (slash == std::string::npos ? "" : name.substr(slash));
        const std::string impl = name.substr(colon + 1, slash == std::string::npos ? std::string::npos : slash - colon - 1);
        double ns = run.GetAdjustedRealTime(); // in the run's time unit
        switch (run.time_unit) {
        case benchmark::kMicrosecond: ns *= 1e3; break;
        case benchmark::kMillisecond: ns *= 1e6; break;
        case benchmark::kSecond: ns *= 1e9; break;
        default: break;
        }
        auto items = run.counters.find("items_per_second");
        if (items != run.counters.end() && items->second.value > 0) ns = 1e9 / items->second.value;
        if (groups_.find(group) == groups_.end()) order_.push_back(group);
        groups_[group].push_back({impl, ns});
    }
}

void RatioReporter::Finalize()
{
    ConsoleReporter::Finalize();
    std::FILE* out = stdout;
    std::fprintf(out, "\n%-44s %-28s %12s %10s\n", "group", "implementation", "ns/item", "vs orv");
    for (const std::string& group : order_) {
        const std::vector<Row>& rows = groups_[group];
        double orv = 0;
        for (const Row& r : rows)
            if (r.impl == "orv") orv = r.nsPerItem;
        for (const Row& r : rows) {
            if (orv > 0) std::fprintf(out, "%-44s %-28s %12.2f %9.2fx\n", group.c_str(), r.impl.c_str(), r.nsPerItem, r.nsPerItem / orv);
            else std::fprintf(out, "%-44s %-28s %12.2f %10s\n", group.c_str(), r.impl.c_str(), r.nsPerItem, "-");
        }
    }
    std::fflush(out);
}

} // namespace orv::bench
