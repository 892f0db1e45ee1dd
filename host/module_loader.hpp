// How a module is brought in: the shared object, and the walk from its entry point to the dispatcher.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "host/embedded_host.hpp"

namespace finance::host {

class ControlBlock;
class ServiceDesk;

// A shared object, loaded while this lives. Empty for a module that is linked into the program. One that is loaded already
// is refused: the loader would hand out the same one again, whose memory then is of whichever host came last. The loader
// knows of other copies of this library in the process (two extensions, say), which ModuleClaim does not.
class SharedObject {
public:
    SharedObject() = default;
    explicit SharedObject(const std::filesystem::path& path);  // throws LoadError

    [[nodiscard]] EntryPoint entry_point() const;      // throws LoadError where there is none
    [[nodiscard]] ColumnsEntry columns_entry() const;  // null where there is none

private:
    struct Closer {
        void operator()(void* handle) const noexcept;
    };

    std::string path_;
    std::unique_ptr<void, Closer> handle_;
};

// A module knows one host. The claim on it, kept by its entry point, lasts while this lives; throws LoadError where
// another one lasts.
class ModuleClaim {
public:
    ModuleClaim(EntryPoint entry, const std::string& name);
    ~ModuleClaim();
    ModuleClaim(const ModuleClaim&) = delete;
    ModuleClaim& operator=(const ModuleClaim&) = delete;

private:
    EntryPoint entry_;
};

// A block that the module took from the host's memory and gave to the host: back to the memory in the end.
class HandedOverBlock {
public:
    HandedOverBlock(MemoryVector& memory, void* block, std::int64_t bytes)
        : memory_{memory}, block_{block}, bytes_{bytes} {}
    ~HandedOverBlock();
    HandedOverBlock(const HandedOverBlock&) = delete;
    HandedOverBlock& operator=(const HandedOverBlock&) = delete;

    [[nodiscard]] void* get() const { return block_; }

private:
    MemoryVector& memory_;
    void* block_;
    std::int64_t bytes_;
};

// What a host lends to a registration; all of it outlives the registration.
struct RegistrationHost {
    ServiceDesk& desk;
    MemoryVector& memory;
    ControlBlock& control_block;
    std::string module_name;  // for error sentences
};

// A registered module: entry point, image record, program control, function item, dispatcher, each checked on the way.
// Throws LoadError with what is wrong. The two blocks that the module hands over are released with this.
class Registration {
public:
    Registration(RegistrationHost host, EntryPoint entry);

    [[nodiscard]] const ImageInformation& image() const { return *image_; }
    [[nodiscard]] const FunctionItem& item() const { return *item_; }
    [[nodiscard]] Dispatcher dispatcher() const { return dispatcher_; }

private:
    [[noreturn]] void fail(const std::string& what) const;
    const ImageInformation* enter(EntryPoint entry);
    [[nodiscard]] RegistrationEntry* find_registration_entry() const;
    void* request(std::int32_t number, const char* wanted);
    [[nodiscard]] const FunctionItem* checked_item() const;
    [[nodiscard]] Dispatcher checked_dispatcher() const;

    RegistrationHost host_;
    const ImageInformation* image_;
    RegistrationEntry* entry_;
    HandedOverBlock items_;
    const FunctionItem* item_;
    HandedOverBlock entries_;
    Dispatcher dispatcher_;
};

}  // namespace finance::host
