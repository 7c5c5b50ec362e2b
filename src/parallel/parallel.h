#pragma once

#include <cstddef>
#include <functional>

namespace velmora {

// Work on several processors at once. It is parted into chunks whose sizes never depend on the number of threads, each
// chunk writes what no other one writes, and what they find is put together in their order: so every result is the
// same, to the last bit, whatever the number of threads.

/// How many threads share the work: what was set, else the environment's VELMORA_THREADS, else one for each processor.
std::size_t threadCount();

/// From now on so many threads share the work; 0 leaves it to the environment and the processors again.
void setThreadCount(std::size_t count);

/// Sets the number of threads as long as it lives.
class ThreadCountScope {
public:
    explicit ThreadCountScope(std::size_t count);
    ~ThreadCountScope();
    ThreadCountScope(const ThreadCountScope&) = delete;
    ThreadCountScope& operator=(const ThreadCountScope&) = delete;

private:
    std::size_t before_;
};

/// The work on the items from `first` to before `last`. No two calls at a time have the same `worker`, which is below
/// `workersFor`: what a worker keeps for itself from chunk to chunk can stand under that number.
using ChunkWork = std::function<void(std::size_t first, std::size_t last, std::size_t worker)>;

/// Learns how much is done, never falling, 1 at the end; called by the thread alone that asked for the work.
using ChunkProgress = std::function<void(double fraction)>;

/// How many workers `forEachChunk` has at most for so many items.
std::size_t workersFor(std::size_t items, std::size_t chunk);

/// Calls `work` for the chunks of `items` items, `chunk` in each but for the last, the earlier ones first; returns when
/// all are done. The calling thread is one of the workers. Work that is asked for within a chunk is done there, by one
/// thread. Of exceptions the one of the first chunk that threw one comes through; the chunks before it are done then,
/// those behind it perhaps not.
void forEachChunk(std::size_t items, std::size_t chunk, const ChunkWork& work, const ChunkProgress& progress = {});

} // namespace velmora
