// Linear memory: at its beginning the room for what JavaScript hands over, behind it what a call asks for, all of which is
// given back when the call has ended. So memory grows to what the largest call needs, and by nothing after it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace finance::wasm {

// The room, at least that many bytes on a word of 8, of undefined content; null where there is no memory for it. What
// calls have asked for is given back.
void* room(std::uint64_t bytes);

// For the call: bytes on a word of 8; null where there is no memory.
void* allocate(std::uint64_t bytes);

// Gives back all that was.
void give_back();

// Gives back what was allocated while it lived.
class Workspace {
public:
    Workspace();
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

private:
    std::size_t top_;
};

}  // namespace finance::wasm
