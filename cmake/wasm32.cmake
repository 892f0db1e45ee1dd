# Debian's clang 16 for WebAssembly: packages clang-16, lld-16, wasi-libc, libc++-16-dev-wasm32, libc++abi-16-dev-wasm32 and
# libclang-rt-16-dev-wasm32. What the flags name is in every engine that is kept up.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(CMAKE_C_COMPILER clang-16)
set(CMAKE_CXX_COMPILER clang++-16)
set(CMAKE_AR llvm-ar-16)
set(CMAKE_RANLIB llvm-ranlib-16)
set(CMAKE_C_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CXX_FLAGS_INIT "-isystem /usr/include/wasm32-wasi/c++/v1 -mbulk-memory -mnontrapping-fptoint -msign-ext")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fuse-ld=/usr/bin/wasm-ld-16")
set(CMAKE_EXECUTABLE_SUFFIX_CXX .wasm)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
