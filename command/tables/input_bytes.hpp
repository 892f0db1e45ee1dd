// The bytes of an input, unpacked where they are gzip.
//
//  (1) What begins with gzip's two bytes is unpacked as it is read, member after member; a few blocks of it are held,
//      however much it comes to.
//  (2) A stream that is damaged, cut off, or followed by what is no gzip is a fault, after what could be unpacked.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace finance::command {

class InputBytes {
public:
    // A descriptor that stays open as long as the reader; name: of the input, for sentences.
    InputBytes(int descriptor, std::string name);
    ~InputBytes();
    InputBytes(const InputBytes&) = delete;
    InputBytes& operator=(const InputBytes&) = delete;

    // At least one byte and at most room, which is not 0; waits for it. 0 at the end. TableError.
    std::size_t read(char* to, std::size_t room);
    // Whether read will not have to wait.
    [[nodiscard]] bool ready() const;
    // Known once something has been read.
    [[nodiscard]] bool packed() const { return inflater_ != nullptr; }

private:
    class Inflater;

    std::size_t read_descriptor(char* to, std::size_t room) const;
    void fill();
    void begin();
    std::size_t unpack(char* to, std::size_t room);

    int descriptor_;
    std::string name_;
    std::vector<char> held_;  // read and not given yet, or not unpacked yet
    std::size_t first_ = 0;   // of what is left in held_
    bool begun_ = false;
    bool ended_ = false;  // the descriptor
    std::unique_ptr<Inflater> inflater_;
};

}  // namespace finance::command
