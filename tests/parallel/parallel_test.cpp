#include "parallel.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

using testing::Each;
using testing::ElementsAre;

/// The environment's number of threads, as long as it lives.
class Environment {
public:
    explicit Environment(const char* threads) { ::setenv("VELMORA_THREADS", threads, 1); }
    ~Environment() { ::unsetenv("VELMORA_THREADS"); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
};

} // namespace

TEST(Parallel, EachItemIsWorkedOnOnceWhateverTheNumberOfThreads) {
    for (const std::size_t threads : {1, 2, 7, 64}) {
        const ThreadCountScope scope(threads);
        for (const std::size_t items : {1, 9, 10, 11, 1000}) {
            std::vector<std::atomic<int>> visits(items);
            forEachChunk(items, 10, [&](std::size_t first, std::size_t last, std::size_t worker) {
                EXPECT_EQ(first % 10, 0U);
                EXPECT_EQ(last, std::min(first + 10, items));
                EXPECT_LT(worker, threads);
                for (std::size_t i = first; i < last; ++i) {
                    ++visits[i];
                }
            });
            EXPECT_THAT(std::vector<int>(visits.begin(), visits.end()), Each(1))
                << threads << " threads, " << items << " items";
        }
    }
}

TEST(Parallel, NothingIsDoneForNoItems) {
    forEachChunk(0, 10, [](std::size_t, std::size_t, std::size_t) { FAIL(); });
}

TEST(Parallel, NoTwoThreadsAreTheSameWorkerAtATime) {
    const ThreadCountScope scope(7);
    const std::size_t workers = workersFor(500, 1);
    EXPECT_EQ(workers, 7U);
    std::vector<std::atomic<int>> busy(workers);
    forEachChunk(500, 1, [&](std::size_t, std::size_t, std::size_t worker) {
        ASSERT_LT(worker, workers);
        EXPECT_EQ(busy[worker]++, 0);
        std::this_thread::yield();
        --busy[worker];
    });
}

TEST(Parallel, WorkIsSharedByThreadsOfWhichTheCallingOneIsTheFirst) {
    const ThreadCountScope scope(2);
    std::atomic<int> present{0};
    std::vector<std::thread::id> ids(2);
    forEachChunk(2, 1, [&](std::size_t, std::size_t, std::size_t worker) {
        ids[worker] = std::this_thread::get_id();
        ++present;
        while (present < 2) { // each waits for the other: one thread alone would never get on
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(ids[0], std::this_thread::get_id());
    EXPECT_NE(ids[1], ids[0]);
}

TEST(Parallel, WorkWithinAChunkStaysInItsThread) {
    const ThreadCountScope scope(4);
    forEachChunk(8, 1, [](std::size_t, std::size_t, std::size_t) {
        EXPECT_EQ(workersFor(1000, 1), 1U);
        const auto outer = std::this_thread::get_id();
        forEachChunk(5, 1, [outer](std::size_t, std::size_t, std::size_t worker) {
            EXPECT_EQ(worker, 0U);
            EXPECT_EQ(std::this_thread::get_id(), outer);
        });
    });
    EXPECT_EQ(workersFor(1000, 1), 4U);
}

TEST(Parallel, TheExceptionOfTheFirstChunkThatFailsComesThrough) {
    for (const std::size_t threads : {1, 2, 7, 64}) {
        const ThreadCountScope scope(threads);
        for (int round = 0; round < 20; ++round) {
            std::vector<std::atomic<int>> done(100);
            std::string message;
            try {
                forEachChunk(100, 1, [&](std::size_t first, std::size_t, std::size_t) {
                    if (first % 20 == 13) {
                        throw std::runtime_error(std::to_string(first));
                    }
                    done[first] = 1;
                });
            } catch (const std::runtime_error& error) {
                message = error.what();
            }
            EXPECT_EQ(message, "13");
            EXPECT_THAT(std::vector<int>(done.begin(), done.begin() + 13), Each(1));
        }
    }
    EXPECT_GE(workersFor(1000, 1), 1U); // and the calling thread is not left inside a chunk
}

TEST(Parallel, ExceptionsOfEveryKindComeThrough) {
    const ThreadCountScope scope(3);
    const auto allFail = [](std::size_t, std::size_t, std::size_t) { throw std::bad_alloc(); };
    EXPECT_THROW(forEachChunk(10, 1, allFail), std::bad_alloc);
    const auto none = [](std::size_t, std::size_t, std::size_t) {};
    EXPECT_THROW(forEachChunk(10, 1, none, [](double) { throw 5; }), int);
}

TEST(Parallel, ProgressRisesToOne) {
    for (const std::size_t threads : {1, 7}) {
        const ThreadCountScope scope(threads);
        std::vector<double> told;
        const auto caller = std::this_thread::get_id();
        forEachChunk(
            4, 1, [](std::size_t, std::size_t, std::size_t) {},
            [&](double fraction) {
                EXPECT_EQ(std::this_thread::get_id(), caller);
                told.push_back(fraction);
            });
        EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
        EXPECT_EQ(told.back(), 1.0);
        EXPECT_THAT(told, Each(testing::AllOf(testing::Gt(0.0), testing::Le(1.0))));
        if (threads == 1) {
            EXPECT_THAT(told, ElementsAre(0.25, 0.5, 0.75, 1.0));
        }
    }
}

TEST(Parallel, TheNumberOfThreadsIsWhatWasSetElseTheEnvironmentsElseTheProcessors) {
    const std::size_t processors = threadCount();
    EXPECT_GE(processors, 1U);
    {
        const Environment environment("5");
        EXPECT_EQ(threadCount(), 5U);
        const ThreadCountScope scope(3);
        EXPECT_EQ(threadCount(), 3U);
        setThreadCount(4);
        EXPECT_EQ(threadCount(), 4U);
        setThreadCount(0);
        EXPECT_EQ(threadCount(), 5U);
    }
    EXPECT_EQ(threadCount(), processors);
    for (const char* const nonsense : {"", "0", "many", "3x", "-1", "99999999999999999999999"}) {
        const Environment environment(nonsense);
        EXPECT_EQ(threadCount(), processors) << nonsense;
    }
    const Environment environment("100000");
    EXPECT_EQ(threadCount(), 256U);
}

} // namespace velmora::test
