#include "command/tables/row_pipeline.hpp"

#include <exception>
#include <utility>

namespace finance::command {

namespace {

constexpr std::size_t kept_output = std::size_t{2} * 1024 * 1024;  // a larger one goes back after its block

}  // namespace

RowPipeline::RowPipeline(std::size_t workers, Work work) : work_{std::move(work)}, slots_(2 * workers) {
    threads_.reserve(workers);
    try {
        for (std::size_t i = 0; i < workers; ++i) threads_.emplace_back([this, i] { run(i); });
    } catch (const std::exception&) {
        // no memory for one more, or too many already: those there are do the work, or else its owner
    }
}

RowPipeline::~RowPipeline() {
    {
        const std::scoped_lock lock{mutex_};
        stopping_ = true;
    }
    work_to_do_.notify_all();
    for (std::thread& thread : threads_) thread.join();
}

void RowPipeline::submit() {
    if (threads_.empty()) {
        Slot& slot = slots_[filled_++ % slots_.size()];
        process(0, slot);
        slot.done = true;
        return;
    }
    {
        const std::scoped_lock lock{mutex_};
        slots_[filled_ % slots_.size()].done = false;
        ++filled_;
    }
    work_to_do_.notify_one();
}

const BlockResult& RowPipeline::oldest() {
    Slot& slot = slots_[taken_ % slots_.size()];
    std::unique_lock lock{mutex_};
    work_done_.wait(lock, [&] { return slot.done; });
    if (slot.fault) std::rethrow_exception(slot.fault);
    return slot.result;
}

std::size_t RowPipeline::oldest_size() const { return slots_[taken_ % slots_.size()].block.text().size(); }

void RowPipeline::run(std::size_t worker) {
    std::unique_lock lock{mutex_};
    for (;;) {
        work_to_do_.wait(lock, [&] { return stopping_ || begun_ < filled_; });
        if (stopping_) return;
        Slot& slot = slots_[begun_++ % slots_.size()];
        lock.unlock();
        process(worker, slot);
        lock.lock();
        slot.done = true;
        work_done_.notify_one();
    }
}

void RowPipeline::process(std::size_t worker, Slot& slot) const {
    slot.fault = nullptr;
    if (slot.result.output.capacity() > kept_output) slot.result.output = {};
    slot.result.output.clear();
    slot.result.summary.clear();
    slot.result.stop = false;
    try {
        work_(worker, slot.block, slot.result);
    } catch (...) {
        slot.fault = std::current_exception();
    }
}

}  // namespace finance::command
