#include "parallel.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <limits>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace velmora {

namespace {

/// More do not help on any machine, and each takes memory.
constexpr std::size_t mostThreads = 256;

/// Work tells of its progress about so often at most.
constexpr std::size_t progressSteps = 200;

std::atomic<std::size_t> countThatWasSet{0};

/// Whether this thread works on a chunk. As wide as a cache line for the linker's sake: mold 1.10 begins the part of
/// the program that is locked after its start at this variable, and where a page ended between it and what is aligned
/// wider behind it, the program would not start.
alignas(64) thread_local bool insideChunk = false;

/// What the environment says; 0 when it says nothing, or no number.
std::size_t countOfEnvironment() {
    const char* const text = std::getenv("VELMORA_THREADS");
    std::size_t count = 0;
    if (text != nullptr) {
        const char* const end = text + std::strlen(text);
        const auto [behind, error] = std::from_chars(text, end, count);
        count = error == std::errc() && behind == end ? count : 0;
    }
    return count;
}

/// The threads are made for each work and end with it: that costs some ten microseconds, and nothing is left behind
/// that a fork or the end of the program would have to care for.
class Crew {
public:
    Crew(std::size_t items, std::size_t chunk, const ChunkWork& work, const ChunkProgress& progress)
        : items_(items), chunk_(chunk), chunks_((items + chunk - 1) / chunk), work_(work), progress_(progress) {}

    void run(std::size_t workers) {
        std::vector<std::thread> helpers;
        try {
            helpers.reserve(workers - 1);
            for (std::size_t worker = 1; worker < workers; ++worker) {
                helpers.emplace_back([this, worker] { takeChunks(worker); });
            }
        } catch (const std::exception&) {
            // No room for one more: those that are there do the work.
        }
        takeChunks(0);
        for (std::thread& helper : helpers) {
            helper.join();
        }
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        if (progress_ && told_ < chunks_) {
            progress_(1.0);
        }
    }

private:
    void takeChunks(std::size_t worker) {
        const bool inside = insideChunk;
        insideChunk = true;
        for (std::size_t number = next_++; number < chunks_ && number < firstFailed_; number = next_++) {
            try {
                const std::size_t first = number * chunk_;
                work_(first, first + std::min(chunk_, items_ - first), worker);
                const std::size_t done = ++done_;
                if (worker == 0 && progress_ && (done - told_) * progressSteps >= chunks_) {
                    told_ = done;
                    progress_(static_cast<double>(done) / static_cast<double>(chunks_));
                }
            } catch (...) {
                keepFailure(number);
            }
        }
        insideChunk = inside;
    }

    /// Chunks are taken in their order: those before the failed one are done or at work, and may fail too.
    void keepFailure(std::size_t number) {
        const std::lock_guard lock(mutex_);
        if (number < firstFailed_) {
            firstFailed_ = number;
            failure_ = std::current_exception();
        }
    }

    const std::size_t items_;
    const std::size_t chunk_;
    const std::size_t chunks_;
    const ChunkWork& work_;
    const ChunkProgress& progress_;
    std::atomic<std::size_t> next_{0};
    std::atomic<std::size_t> done_{0};
    std::size_t told_ = 0; ///< of the chunks done, how many the progress has learnt of
    std::atomic<std::size_t> firstFailed_{std::numeric_limits<std::size_t>::max()};
    std::mutex mutex_;
    std::exception_ptr failure_;
};

} // namespace

std::size_t threadCount() {
    std::size_t count = countThatWasSet;
    if (count == 0) {
        count = countOfEnvironment();
    }
    if (count == 0) {
        count = std::thread::hardware_concurrency();
    }
    return std::clamp<std::size_t>(count, 1, mostThreads);
}

void setThreadCount(std::size_t count) {
    countThatWasSet = count;
}

ThreadCountScope::ThreadCountScope(std::size_t count) : before_(countThatWasSet.exchange(count)) {}

ThreadCountScope::~ThreadCountScope() {
    countThatWasSet = before_;
}

std::size_t workersFor(std::size_t items, std::size_t chunk) {
    const std::size_t chunks = items / chunk + (items % chunk == 0 ? 0 : 1);
    return insideChunk || chunks < 2 ? 1 : std::min(threadCount(), chunks);
}

void forEachChunk(std::size_t items, std::size_t chunk, const ChunkWork& work, const ChunkProgress& progress) {
    if (items > 0) {
        Crew(items, chunk, work, progress).run(workersFor(items, chunk));
    }
}

} // namespace velmora
