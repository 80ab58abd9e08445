// Benchmarks are named "<group>:<implementation>[/<args>]", for example
// "InstantToFields:orv", "InstantToFields:gmtime_r" or "SetFind:std::set/1000". After the
// usual console output a table lists, for every group and argument set, each
// implementation's time per item and that time divided by the "orv" row's (above 1:
// orv is faster), since the machines are shared and only same-run ratios mean much.
#ifndef ORV_BENCH_RATIOREPORTER_H
#define ORV_BENCH_RATIOREPORTER_H

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace orv::bench {

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    struct Row {
        std::string impl;
        double nsPerItem;
    };
    std::map<std::string, std::vector<Row>> groups_; // key: group + args, in name order
    std::vector<std::string> order_;
};

} // namespace orv::bench

#endif
