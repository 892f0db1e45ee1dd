// Blocks of rows through several threads, out in the order in which they went in.
//
// A ring of slots: its owner fills the next free one, workers take the filled ones in order, the owner takes the
// results in order. The memory in use is that of the ring.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "command/tables/run_summary.hpp"
#include "command/tables/table_reader.hpp"

namespace finance::command {

struct BlockResult {
    std::string output{};
    RunSummary summary{};
    bool stop = false;  // nothing after this block is wanted
};

class RowPipeline {
public:
    using Work = std::function<void(std::size_t worker, const Block& block, BlockResult& result)>;

    // work runs in that many threads, each with its own number from 0 on; in fewer where the system gives no more, and
    // within submit() where it gives none.
    RowPipeline(std::size_t workers, Work work);
    ~RowPipeline();
    RowPipeline(const RowPipeline&) = delete;
    RowPipeline& operator=(const RowPipeline&) = delete;

    [[nodiscard]] bool empty() const { return taken_ == filled_; }
    [[nodiscard]] bool full() const { return filled_ - taken_ == slots_.size(); }

    // The block to be filled next; not while full.
    Block& next_block() { return slots_[filled_ % slots_.size()].block; }
    void submit();
    // Waits for the oldest block's result, which is valid until drop_oldest. Rethrows what its work threw. Not while
    // empty.
    const BlockResult& oldest();
    [[nodiscard]] std::size_t oldest_size() const;
    void drop_oldest() { ++taken_; }

private:
    struct Slot {
        Block block{};
        BlockResult result{};
        std::exception_ptr fault{};
        bool done = false;
    };

    void run(std::size_t worker);
    void process(std::size_t worker, Slot& slot) const;

    Work work_;
    std::vector<Slot> slots_;
    std::uint64_t filled_ = 0;  // blocks submitted; written by the owner, under the mutex
    std::uint64_t taken_ = 0;   // results taken; the owner's own
    std::uint64_t begun_ = 0;   // blocks that a worker has taken up
    bool stopping_ = false;
    std::mutex mutex_;
    std::condition_variable work_to_do_;
    std::condition_variable work_done_;
    std::vector<std::thread> threads_;
};

}  // namespace finance::command
