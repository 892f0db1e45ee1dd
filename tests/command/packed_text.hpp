// Text packed by zlib as gzip does it.
#pragma once

#include <zlib.h>

#include <stdexcept>
#include <string>

namespace finance::test {

inline std::string packed(std::string text) {
    constexpr int gzip = 16;
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzip + MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error{"nothing can be packed"};
    }
    std::string result(deflateBound(&stream, text.size()) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(text.data());
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    const int outcome = deflate(&stream, Z_FINISH);
    result.resize(stream.total_out);
    deflateEnd(&stream);
    if (outcome != Z_STREAM_END) throw std::runtime_error{"the packed text does not fit"};
    return result;
}

}  // namespace finance::test
