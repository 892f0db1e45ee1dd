"""DuckDB's C library: a database in memory with the extension loaded, one thread."""

import ctypes


class Result(ctypes.Structure):
    _fields_ = [("counts", ctypes.c_uint64 * 3), ("columns", ctypes.c_void_p), ("error", ctypes.c_char_p),
                ("data", ctypes.c_void_p)]


class Database:
    def __init__(self, library, extension):
        self.library = ctypes.CDLL(library)
        self.library.duckdb_result_error.restype = ctypes.c_char_p
        config, database, self.connection = (ctypes.c_void_p() for _ in range(3))
        self.library.duckdb_create_config(ctypes.byref(config))
        self.library.duckdb_set_config(config, b"allow_unsigned_extensions", b"true")
        if self.library.duckdb_open_ext(None, ctypes.byref(database), config, None):
            raise RuntimeError("DuckDB does not open")
        self.library.duckdb_connect(database, ctypes.byref(self.connection))
        self.run("SET threads = 1")
        self.run(f"LOAD '{extension}'")

    def run(self, sql):
        result = Result()
        if self.library.duckdb_query(self.connection, sql.encode(), ctypes.byref(result)):
            raise RuntimeError(self.library.duckdb_result_error(ctypes.byref(result)).decode())
        self.library.duckdb_destroy_result(ctypes.byref(result))
