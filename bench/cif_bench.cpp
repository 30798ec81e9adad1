// Read and write throughput of the CIF engine, with Google Benchmark.
//
// Usage: cif_bench [benchmark flags] [BIG_FILE]
// The big input (bench/make_input.py makes it) comes from the argument that is not a flag, or
// else from the environment variable CIFWARD_BENCH_INPUT; without either, the big-file cases
// report an error and are skipped. The small case reads 4hir.cif from the shared
// corpus (CIFWARD_BENCH_SMALL overrides the path).
//
// Bytes processed are input bytes for a read and output bytes for a write, so the MB/s columns
// of the two can be compared with the file sizes.

#include "Cif.h"
#include "CifConcreteDictionary.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

namespace {

std::string big_path;
std::string small_path;

// Counts what is written and throws it away. A write into a string stream would also measure
// the growth of a 200 MB string; this keeps to the formatting.
class CountingBuf : public std::streambuf {
public:
    CountingBuf() { setp(buffer_, buffer_ + sizeof buffer_); }
    std::size_t count() const { return counted_ + static_cast<std::size_t>(pptr() - pbase()); }

protected:
    int_type overflow(int_type ch) override
    {
        drain();
        if (!traits_type::eq_int_type(ch, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(ch);
            pbump(1);
        }
        return traits_type::not_eof(ch);
    }
    int sync() override
    {
        drain();
        return 0;
    }

private:
    void drain()
    {
        // Touch the bytes once, so an optimiser cannot drop the work that made them.
        benchmark::DoNotOptimize(buffer_[0]);
        counted_ += static_cast<std::size_t>(pptr() - pbase());
        setp(buffer_, buffer_ + sizeof buffer_);
    }

    char buffer_[1 << 16];
    std::size_t counted_ = 0;
};

std::int64_t file_size(const std::string& path)
{
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    return in ? static_cast<std::int64_t>(in.tellg()) : -1;
}

std::unique_ptr<Cif> read_file(const std::string& path)
{
    HCifDictionary dictionary(new CifConcreteDictionary);
    auto cif = std::make_unique<Cif>(dictionary);
    std::ifstream in(path, std::ios::binary);
    cif->read(in);
    return cif;
}

// One read per iteration from a fresh ifstream. The model of the previous iteration is freed
// while the clock is stopped: freeing is not reading, and cif_read_once's process time already
// covers it.
void read_case(benchmark::State& state, const std::string& path)
{
    const std::int64_t size = path.empty() ? -1 : file_size(path);
    if (size < 0) {
        state.SkipWithError(path.empty() ? "no big input: pass its path or set CIFWARD_BENCH_INPUT"
                                         : ("cannot open " + path).c_str());
        return;
    }
    HCifDictionary dictionary(new CifConcreteDictionary);
    std::unique_ptr<Cif> cif;
    std::size_t blocks = 0;
    for (auto _ : state) {
        state.PauseTiming();
        cif.reset();
        cif = std::make_unique<Cif>(dictionary);
        std::ifstream in(path, std::ios::binary);
        state.ResumeTiming();
        cif->read(in);
        blocks = cif->block_count();
        benchmark::DoNotOptimize(blocks);
    }
    state.SetBytesProcessed(state.iterations() * size);
    state.counters["blocks"] = static_cast<double>(blocks);
    state.counters["findings"] = static_cast<double>(cif->errors()->count());
}

// The model is read once outside the clock; each iteration writes all of it.
void write_case(benchmark::State& state, const std::string& path)
{
    if (path.empty() || file_size(path) < 0) {
        state.SkipWithError(path.empty() ? "no big input: pass its path or set CIFWARD_BENCH_INPUT"
                                         : ("cannot open " + path).c_str());
        return;
    }
    const std::unique_ptr<Cif> cif = read_file(path);
    std::size_t written = 0;
    for (auto _ : state) {
        CountingBuf sink;
        std::ostream out(&sink);
        cif->write(out);
        out.flush();
        written = sink.count();
        benchmark::DoNotOptimize(written);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(written));
    state.counters["output_bytes"] = static_cast<double>(written);
}

void BM_ReadBig(benchmark::State& state)
{
    read_case(state, big_path);
}
void BM_WriteBig(benchmark::State& state)
{
    write_case(state, big_path);
}
void BM_ReadSmall_4hir(benchmark::State& state)
{
    read_case(state, small_path);
}
void BM_WriteSmall_4hir(benchmark::State& state)
{
    write_case(state, small_path);
}

// A big-file iteration takes seconds: a few of them are enough, and wall time is what a user
// waits for.
BENCHMARK(BM_ReadBig)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(BM_WriteBig)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(BM_ReadSmall_4hir)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_WriteSmall_4hir)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

// The library's stock main, under another name: it handles the benchmark flags and runs the
// cases, and this file's main only has to take the input path off the command line first.
#define main cifward_benchmark_main
BENCHMARK_MAIN();
#undef main

int main(int argc, char** argv)
{
    // An argument that is not a flag is the big input's path; the flags are passed on.
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        if (argv[i][0] != '-' && big_path.empty())
            big_path = argv[i];
        else
            argv[kept++] = argv[i];
    }
    argc = kept;
    argv[argc] = nullptr;
    if (const char* env = std::getenv("CIFWARD_BENCH_INPUT"); big_path.empty() && env)
        big_path = env;
    if (const char* env = std::getenv("CIFWARD_BENCH_SMALL"))
        small_path = env;
    else
        small_path = std::string(CIFWARD_SHARED_DIR) + "/corpus/iucr-ciftest/real/4hir.cif";
    return cifward_benchmark_main(argc, argv);
}
