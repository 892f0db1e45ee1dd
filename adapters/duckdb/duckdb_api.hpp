// DuckDB's functions for extensions. Each duckdb_... that its header names is a member of one table, which DuckDB hands
// over when it loads the extension.
#pragma once

#include <duckdb_extension.h>

#include <exception>
#include <new>

DUCKDB_EXTENSION_EXTERN

namespace finance::adapters::duckdb {

inline void destroy(duckdb_logical_type& type) { duckdb_destroy_logical_type(&type); }
inline void destroy(duckdb_scalar_function& function) { duckdb_destroy_scalar_function(&function); }
inline void destroy(duckdb_scalar_function_set& set) { duckdb_destroy_scalar_function_set(&set); }
inline void destroy(duckdb_table_function& function) { duckdb_destroy_table_function(&function); }
inline void destroy(duckdb_connection& connection) { duckdb_disconnect(&connection); }

// What DuckDB made for the extension and wants to have back.
template <typename Handle>
class Owned {
public:
    explicit Owned(Handle handle) : handle_{handle} {}
    ~Owned() { destroy(handle_); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    [[nodiscard]] Handle get() const { return handle_; }

private:
    Handle handle_;
};

// Runs what DuckDB has called. An exception ends here: tell(sentence).
template <typename Run, typename Tell>
void or_tell(Run run, Tell tell) noexcept {
    try {
        run();
    } catch (const std::bad_alloc&) {
        tell("zelkovan: there is not enough memory");
    } catch (const std::exception& fault) {
        tell(fault.what());
    } catch (...) {
        tell("zelkovan: a fault without a name");
    }
}

// Something of ours that a function of DuckDB's keeps.
template <typename T>
void delete_kept(void* kept) {
    delete static_cast<T*>(kept);
}

}  // namespace finance::adapters::duckdb
