// The frame path beside its peers: memcpy, the plain loop over 32-bit entries and, for bytes, OpenCV's LUT,
// all on one thread and the same buffers. Each iteration runs every one of them in turn, and a column is the
// median of the iterations' ratios, so that a machine that changes its pace changes no ratio. What is timed
// of ours begins with cutting the editor's table down to the frame's depth.
//
//   time/memcpy     how many times longer than a copy takes (less is better)
//   plain/time      how many times as fast as the plain loop, which maps words beyond the table like its last
//   entry LUT/time        how many times as fast as OpenCV unchecked/time  how many times as fast as a loop
//   that would read beyond the table; in frames without such words
//
// "memory": each run takes the next buffers of a ring larger than the caches. "warm": each run follows an
// untimed one of its own on the same buffers.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#include <time.h>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>

#include "plugin/FrameKernels.h"

namespace {

constexpr int kEditorEntries = 4096;
constexpr std::size_t kRingBytes = std::size_t(256) << 20;

struct Path
{
    const char* name;
    int bits;
    bool beyond; // every 64 bytes hold a word beyond the table
};
constexpr Path kPaths[] = {
    {"8-bit", 8, false}, {"10-bit", 10, false}, {"12-bit", 12, false}, {"12-bit beyond", 12, true}};

struct Size
{
    int width, height;
    int iterations;
};
constexpr Size kSizes[] = {{640, 480, 301}, {1920, 1080, 101}, {4096, 3000, 31}, {14192, 10640, 5}};

struct Frame
{
    std::unique_ptr<std::uint8_t[]> src, dst;
};

// Input and output buffers, used in turn.
class Ring
{
public:
    Ring(const Path& path, const Size& size, bool warm)
        : m_bytes(std::size_t(size.width) * size.height * (path.bits == 8 ? 1 : 2)),
          m_frames(warm ? 1 : 1 + kRingBytes / (2 * m_bytes))
    {
        std::mt19937 random(1);
        for (Frame& frame : m_frames) {
            frame.src.reset(new std::uint8_t[m_bytes]);
            frame.dst.reset(new std::uint8_t[m_bytes]());
            const auto mask = std::uint32_t((1 << path.bits) - 1);
            for (std::size_t i = 0; i < m_bytes; i += 4) {
                std::uint32_t pixels = random() & (path.bits == 8 ? 0xffffffff : mask << 16 | mask);
                if (path.beyond && i % 64 == 0)
                    pixels |= 0x8000;
                std::memcpy(&frame.src[i], &pixels, 4);
            }
        }
    }

    Frame& Next() { return m_frames[m_next++ % m_frames.size()]; }
    std::size_t bytes() const { return m_bytes; }

private:
    std::size_t m_bytes;
    std::vector<Frame> m_frames;
    std::size_t m_next = 0;
};

const std::vector<std::int32_t>& EditorTable()
{
    static const std::vector<std::int32_t> table = [] {
        std::vector<std::int32_t> entries(kEditorEntries);
        for (int i = 0; i < kEditorEntries; ++i)
            entries[i] = i * i / kEditorEntries;
        return entries;
    }();
    return table;
}

std::vector<std::int32_t> FrameTable(int bits)
{
    std::vector<std::int32_t> table(std::size_t(1) << bits);
    orlune::ResampleLut(EditorTable().data(), kEditorEntries, table.data(), int(table.size()), 12 - bits);
    return table;
}

void Ours(const Path& path, const Size& size, const orlune::KernelSet& kernels, Frame& frame)
{
    const int entries = 1 << path.bits;
    const std::unique_ptr<std::int32_t[]> table(new (std::nothrow) std::int32_t[entries]);
    orlune::ResampleLut(EditorTable().data(), kEditorEntries, table.get(), entries, 12 - path.bits);
    if (path.bits == 8)
        orlune::ApplyLut8(frame.src.get(), frame.dst.get(), size.width, size.height, table.get(), kernels);
    else
        orlune::ApplyLut16(reinterpret_cast<const std::uint16_t*>(frame.src.get()),
                           reinterpret_cast<std::uint16_t*>(frame.dst.get()), size.width, size.height,
                           table.get(), entries, kernels);
}

template <class Pixel, bool kChecked>
[[gnu::noinline]] void PlainLoop(const Pixel* src, Pixel* dst, std::size_t count, const std::int32_t* table,
                                 std::size_t entries)
{
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = Pixel(table[kChecked ? std::min<std::size_t>(src[i], entries - 1) : src[i]]);
}

template <class Pixel, bool kChecked>
void Plain(std::size_t bytes, const std::vector<std::int32_t>& table, Frame& frame)
{
    PlainLoop<Pixel, kChecked>(reinterpret_cast<const Pixel*>(frame.src.get()),
                               reinterpret_cast<Pixel*>(frame.dst.get()), bytes / sizeof(Pixel), table.data(),
                               table.size());
}

// Time that this thread had a processor for: what else runs on the machine takes none of it.
double ThreadSeconds()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

constexpr char kTime[] = "time";
constexpr const char* kRatios[] = {"time/memcpy", "plain/time", "LUT/time", "unchecked/time"};

void BenchFrames(benchmark::State& state, const Path& path, const Size& size, bool warm,
                 const orlune::KernelSet& kernels)
{
    Ring ring(path, size, warm);
    const std::vector<std::int32_t> table = FrameTable(path.bits);
    cv::Mat bytes(1, 256, CV_8U);
    if (path.bits == 8)
        std::copy(table.begin(), table.end(), bytes.ptr());

    const auto copy = [&](Frame& frame) { std::memcpy(frame.dst.get(), frame.src.get(), ring.bytes()); };
    const auto ours = [&](Frame& frame) { Ours(path, size, kernels, frame); };
    const auto plain = [&](Frame& frame) {
        (path.bits == 8 ? Plain<std::uint8_t, false> : Plain<std::uint16_t, true>)(ring.bytes(), table,
                                                                                   frame);
    };
    const auto unchecked = [&](Frame& frame) { Plain<std::uint16_t, false>(ring.bytes(), table, frame); };
    const auto openCv = [&](Frame& frame) {
        const cv::Mat in(size.height, size.width, CV_8U, frame.src.get());
        cv::Mat out(size.height, size.width, CV_8U, frame.dst.get());
        cv::LUT(in, bytes, out);
    };
    Frame& frame = ring.Next();
    plain(frame);
    const std::vector<std::uint8_t> wanted(frame.dst.get(), frame.dst.get() + ring.bytes());
    ours(frame);
    if (!std::equal(wanted.begin(), wanted.end(), frame.dst.get()))
        state.SkipWithError("another result than the plain loop's");

    const auto seconds = [&](const auto& run) {
        Frame& next = ring.Next();
        if (warm)
            run(next);
        const double start = ThreadSeconds();
        run(next);
        return ThreadSeconds() - start;
    };
    std::vector<double> times, ratios[std::size(kRatios)];
    for (auto _ : state) {
        const double copyTime = seconds(copy);
        const double time = seconds(ours);
        state.SetIterationTime(time);
        times.push_back(time);
        ratios[0].push_back(time / copyTime);
        ratios[1].push_back(seconds(plain) / time);
        if (path.bits == 8)
            ratios[2].push_back(seconds(openCv) / time);
        else if (!path.beyond)
            ratios[3].push_back(seconds(unchecked) / time);
    }
    if (times.empty())
        return;
    state.counters[kTime] = Median(times);
    for (std::size_t i = 0; i < std::size(kRatios); ++i)
        if (!ratios[i].empty())
            state.counters[kRatios[i]] = Median(ratios[i]);
}

// One line a benchmark: its time and the ratios.
class TableReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context& context) override
    {
        PrintBasicContext(&GetErrorStream(), context);
        std::printf("%-46s %10s", "case", "time us");
        for (const char* ratio : kRatios)
            std::printf(" %14s", ratio);
        std::printf("\n");
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            std::printf("%-46s", run.run_name.function_name.c_str());
            if (run.error_occurred) {
                m_failed = true;
                std::printf(" failed: %s\n", run.error_message.c_str());
                continue;
            }
            std::printf(" %10.1f", run.counters.at(kTime).value * 1e6);
            for (const char* ratio : kRatios) {
                const auto found = run.counters.find(ratio);
                if (found != run.counters.end())
                    std::printf(" %14.2f", found->second.value);
                else
                    std::printf(" %14s", "");
            }
            std::printf("\n");
            std::fflush(stdout);
        }
    }

    bool failed() const { return m_failed; }

private:
    bool m_failed = false;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    cv::setNumThreads(1);
    for (const Path& path : kPaths)
        for (const Size& size : kSizes)
            for (const bool warm : {false, true}) {
                const bool fitsNoCache = size.iterations < 10;
                if ((fitsNoCache && warm) || (path.beyond && size.width != 4096))
                    continue;
                for (const orlune::KernelSet& kernels : orlune::AvailableKernelSets()) {
                    const std::string name = std::string(path.name) + "/" + std::to_string(size.width) + "x" +
                                             std::to_string(size.height) + (warm ? "/warm/" : "/memory/") +
                                             kernels.name;
                    benchmark::RegisterBenchmark(name.c_str(), BenchFrames, path, size, warm, kernels)
                        ->UseManualTime()
                        ->Iterations(size.iterations);
                }
            }
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.failed() ? 1 : 0;
}
