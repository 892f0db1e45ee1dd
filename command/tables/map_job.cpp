#include <algorithm>
#include <exception>
#include <thread>
#include <vector>

#include "command/interruption.hpp"
#include "command/jobs.hpp"
#include "command/tables/progress.hpp"
#include "command/tables/row_evaluator.hpp"
#include "command/tables/row_filter.hpp"
#include "command/tables/row_pipeline.hpp"
#include "command/tables/table_reader.hpp"
#include "command/tables/table_record.hpp"
#include "command/tables/table_run.hpp"
#include "command/text_layout.hpp"

namespace finance::command {

namespace {

constexpr unsigned most_workers = 4;

std::size_t worker_count() { return std::clamp(std::thread::hardware_concurrency(), 1U, most_workers); }

// The rows of one block.
class BlockWorker {
public:
    BlockWorker(const host::EmbeddedHost& host, const TableRun& run)
        : evaluator_{host, run.plan, run.form()},
          filter_{run.plan, run.table.header().names, run.table.delimiter()},
          index_{run.table.delimiter(), run.plan.columns} {}

    void process(const Block& block, BlockResult& result) {
        index_.begin(block);
        place_ = 0;
        while (!result.stop && !interrupted() && take_rows()) {
            result.stop = !evaluator_.evaluate(result.output, result.summary);
        }
    }

private:
    // As many as are evaluated together; false where none is left.
    bool take_rows() {
        RowColumns& rows = evaluator_.rows();
        while (!rows.full() && (place_ < index_.size() || next_records())) add(place_++);
        rows.read(index_);
        return rows.size() > 0;
    }

    bool next_records() {
        evaluator_.rows().read(index_);
        place_ = 0;
        return index_.next();
    }

    void add(std::size_t place) {
        RowColumns& rows = evaluator_.rows();
        const auto& [record, line, fields, first_end] = index_[place];
        if (index_.empty_line(place)) return rows.add_empty_line(record, line);
        switch (filter_.of(index_, place)) {
            case RowFilter::Verdict::taken:
                return rows.add(index_, place);
            case RowFilter::Verdict::unknown:
                return rows.add_refused(record, line, filter_.fault());
            case RowFilter::Verdict::left_out:
                return;
        }
    }

    RowEvaluator evaluator_;
    RowFilter filter_;
    RecordIndex index_;
    std::size_t place_ = 0;  // in the index, of the next record
};

// From the table to the writer, in order.
class MapRun {
public:
    MapRun(const host::EmbeddedHost& host, TableRun& run, RunSummary& summary)
        : table_{run.table},
          summary_{summary},
          workers_(worker_count(), BlockWorker{host, run}),
          progress_{run.table.size(), run.options.quiet},
          pipeline_{workers_.size(), [this](std::size_t worker, const Block& block, BlockResult& result) {
                        workers_[worker].process(block, result);
                    }} {}

    // What is wrong with the input is thrown once all rows before it are written.
    void run(TableWriter& writer) {
        while (!stopped_ && step(writer)) {
        }
        while (!stopped_ && !pipeline_.empty()) write_oldest(writer);
        if (fault_) std::rethrow_exception(fault_);
    }

private:
    // Results go out while there is nothing to read, so that a slow producer sees its rows answered.
    bool step(TableWriter& writer) {
        if (pipeline_.full() || (!pipeline_.empty() && !table_.ready())) {
            write_oldest(writer);
            return true;
        }
        try {
            if (!table_.next(pipeline_.next_block())) return false;
        } catch (const TableError&) {
            fault_ = std::current_exception();
            return false;
        }
        pipeline_.submit();
        return true;
    }

    void write_oldest(TableWriter& writer) {
        const BlockResult& result = pipeline_.oldest();
        stop_if_interrupted();
        writer.write(result.output);
        summary_.add(result.summary);
        bytes_ += pipeline_.oldest_size();
        stopped_ = result.stop;
        pipeline_.drop_oldest();
        progress_.update(summary_.all(), bytes_);
    }

    OpenTable& table_;
    RunSummary& summary_;
    std::vector<BlockWorker> workers_;
    Progress progress_;
    std::uint64_t bytes_ = 0;
    bool stopped_ = false;
    std::exception_ptr fault_;
    RowPipeline pipeline_;  // the last: its threads use the others
};

Outcome map_rows(const TableOptions& options, const Settings& settings) {
    TableRun run{options, settings.variables};
    name_results(run.plan, run.calls, run.table.header().names, options.status);
    const host::EmbeddedHost& host = settings.host.get();
    return finish(run, "map", "rows", run.table.header_line(), [&](TableWriter& writer, RunSummary& summary) {
        MapRun{host, run, summary}.run(writer);
    });
}

std::string map_help() {
    return "map: calls over the rows of a table, their results as further columns\n"
           "\n"
           "  finance map 'CALL(ARGUMENT, ...) [as NAME], ...' [FILE] [OPTION...]\n"
           "\n"
           "Rows keep their order and every byte of their columns. A row that is refused has an empty result; the\n"
           "summary on standard error counts rows and lists the first that were refused.\n"
           "\n" +
           table_options_help(false) +
           "\n"
           "Example\n"
           "  finance map 'PRICE(settlement, maturity, rate, 6.5%, 100, 2, basis) as price' bonds.csv > priced.csv\n";
}

Outcome map_table(Words words, const Settings& settings) {
    const TableOptions options = read_table_options(words, map_job, settings);
    return options.help ? shown_help(map_help()) : map_rows(options, settings);
}

}  // namespace

constinit const Job map_job{
    {"map", "'CALL(...)' [FILE]", "calls over the rows of a table", std::span{table_options}.subspan(1)},
    map_table,
    map_help};

}  // namespace finance::command
