// SQLite's memory for this program, of which a request can be made to fail.
#pragma once

namespace finance::test {

// The n-th request of this thread from now on gets nothing, 1 the next one; 0 none.
void fail_sqlite_request(int n);

}  // namespace finance::test
