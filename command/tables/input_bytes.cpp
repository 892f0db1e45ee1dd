#include "command/tables/input_bytes.hpp"

#include <poll.h>
#include <unistd.h>
#define ZLIB_CONST  // what is unpacked is not written to
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include "command/interruption.hpp"
#include "command/tables/table_record.hpp"

namespace finance::command {

namespace {

constexpr std::size_t held_size = std::size_t{64} * 1024;
constexpr std::string_view gzip_mark = "\x1F\x8B";

void wait_for_input(int descriptor) {
    pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
    poll(&waiting, 1, -1);
}

}  // namespace

// ---- One gzip stream after the other

class InputBytes::Inflater {
public:
    explicit Inflater(const std::string& name) : name_{name} {
        constexpr int gzip_only = 16;
        if (inflateInit2(&stream_, gzip_only + MAX_WBITS) != Z_OK) {
            throw TableError{name_ + " cannot be unpacked: there is no memory"};
        }
    }
    ~Inflater() { inflateEnd(&stream_); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    // Whether there is more to come of what was taken. inflate takes all that it is given, unless the room ends.
    [[nodiscard]] bool holds_output() const { return room_ended_; }
    [[nodiscard]] bool between_members() const { return between_members_; }

    // Takes packed bytes away from the front of `from` and gives how many bytes it made of them.
    std::size_t unpack(std::string_view& from, char* to, std::size_t room) {
        if (between_members_ && !from.empty()) begin_member();
        stream_.next_in = reinterpret_cast<const Bytef*>(from.data());
        stream_.avail_in = static_cast<uInt>(from.size());
        stream_.next_out = reinterpret_cast<Bytef*>(to);
        stream_.avail_out = static_cast<uInt>(std::min(room, largest_room));
        const uInt given_room = stream_.avail_out;
        const int outcome = inflate(&stream_, Z_NO_FLUSH);
        if (outcome != Z_OK && outcome != Z_STREAM_END && outcome != Z_BUF_ERROR) fail();
        from.remove_prefix(from.size() - stream_.avail_in);
        between_members_ = outcome == Z_STREAM_END;
        room_ended_ = !between_members_ && stream_.avail_out == 0;
        return given_room - stream_.avail_out;
    }

private:
    static constexpr std::size_t largest_room = std::size_t{1} << 30U;

    void begin_member() {
        inflateReset(&stream_);
        between_members_ = false;
        first_member_ = false;
    }
    [[noreturn]] void fail() const {
        const bool garbage = !first_member_ && stream_.total_out == 0;
        throw TableError{
            name_ + " is damaged: " +
            (garbage ? "what follows the end of its gzip stream is no gzip" : "its gzip stream is corrupt")};
    }

    const std::string& name_;
    z_stream stream_{};
    bool room_ended_ = false;
    bool between_members_ = false;
    bool first_member_ = true;
};

// ---- The input

InputBytes::InputBytes(int descriptor, std::string name) : descriptor_{descriptor}, name_{std::move(name)} {}

InputBytes::~InputBytes() = default;

std::size_t InputBytes::read_descriptor(char* to, std::size_t room) const {
    for (;;) {
        const ssize_t n = ::read(descriptor_, to, room);
        if (n >= 0) return static_cast<std::size_t>(n);
        if (errno == EINTR) stop_if_interrupted();
        if (errno == EAGAIN) wait_for_input(descriptor_);
        if (errno != EAGAIN && errno != EINTR) throw TableError{name_ + " cannot be read: " + std::strerror(errno)};
    }
}

// More behind what is held.
void InputBytes::fill() {
    held_.erase(held_.begin(), held_.begin() + static_cast<std::ptrdiff_t>(first_));
    first_ = 0;
    const std::size_t size = held_.size();
    held_.resize(held_size);
    std::size_t read = 0;
    try {
        read = read_descriptor(held_.data() + size, held_size - size);
    } catch (const TableError&) {
        held_.resize(size);
        throw;
    }
    held_.resize(size + read);
    ended_ = read == 0;
}

void InputBytes::begin() {
    while (!ended_ && held_.size() < gzip_mark.size() && gzip_mark.starts_with({held_.data(), held_.size()})) fill();
    begun_ = true;
    if (std::string_view{held_.data(), held_.size()}.starts_with(gzip_mark)) {
        inflater_ = std::make_unique<Inflater>(name_);
    }
}

std::size_t InputBytes::unpack(char* to, std::size_t room) {
    for (;;) {
        if (!inflater_->holds_output() && first_ == held_.size() && !ended_) fill();
        std::string_view packed{held_.data() + first_, held_.size() - first_};
        const bool nothing_left = packed.empty() && !inflater_->holds_output();
        if (nothing_left && inflater_->between_members()) return 0;
        if (nothing_left) throw TableError{name_ + " is cut off: its gzip stream does not end"};
        const std::size_t made = inflater_->unpack(packed, to, room);
        first_ = held_.size() - packed.size();
        if (made > 0) return made;
    }
}

std::size_t InputBytes::read(char* to, std::size_t room) {
    if (!begun_) begin();
    if (packed()) return unpack(to, room);
    if (first_ == held_.size()) return ended_ ? 0 : read_descriptor(to, room);
    const std::size_t given = std::min(room, held_.size() - first_);
    std::memcpy(to, held_.data() + first_, given);
    first_ += given;
    if (first_ == held_.size()) held_ = {}, first_ = 0;
    return given;
}

bool InputBytes::ready() const {
    if (first_ < held_.size() || ended_ || (packed() && inflater_->holds_output())) return true;
    pollfd asked{.fd = descriptor_, .events = POLLIN, .revents = 0};
    return poll(&asked, 1, 0) != 0;
}

}  // namespace finance::command
