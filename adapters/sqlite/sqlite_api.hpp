// SQLite as a loaded extension sees it: through the table of routines that the program hands over.
#pragma once

#include <sqlite3ext.h>

SQLITE_EXTENSION_INIT3
