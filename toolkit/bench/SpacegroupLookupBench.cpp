// Lookup of a space group by its operators over the whole table, for the largest groups: the
// answer has to come within a millisecond.
#include "Spacegroup.h"

#include <algorithm>
#include <benchmark/benchmark.h>

namespace {

std::vector<SymmOp> shuffled_operators(const char* name)
{
    std::vector<SymmOp> ops = Spacegroup(name).symmops();
    std::reverse(ops.begin(), ops.end());
    for (std::size_t i = 0; i < ops.size(); i += 2)
        ops[i].set_trans(ops[i].trans() + Vector3D(1, 0, -1));
    return ops;
}

void lookup(benchmark::State& state, const char* name)
{
    const auto ops = shuffled_operators(name);
    for (auto _ : state) {
        const Spacegroup found(ops);
        benchmark::DoNotOptimize(found.row());
    }
}

// 192 operators that form no row: every row of that size is compared and none fits.
void lookup_unknown(benchmark::State& state)
{
    auto ops = shuffled_operators("Fm-3m");
    ops.back().set_trans(ops.back().trans() + Vector3D(0.125, 0, 0));
    for (auto _ : state) {
        const Spacegroup found(ops);
        benchmark::DoNotOptimize(found.row());
    }
}

} // namespace

BENCHMARK_CAPTURE(lookup, Fm_3m_192, "Fm-3m")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(lookup, Fd_3c_192, "Fd-3c")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(lookup, P21_c_4, "P21/c")->Unit(benchmark::kMicrosecond);
BENCHMARK(lookup_unknown)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
