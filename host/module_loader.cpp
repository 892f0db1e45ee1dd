#include "host/module_loader.hpp"

#include <dlfcn.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <string_view>
#include <vector>

#include "host/control_block.hpp"
#include "host/memory_vector.hpp"
#include "host/services.hpp"

namespace finance::host {
namespace {

constexpr std::string_view entry_name = "mcn_main";
constexpr std::string_view columns_name = "fnccols";
constexpr std::string_view program_name = ZELKOVAN_PROGRAM_NAME;
constexpr std::string_view function_name = ZELKOVAN_FUNCTION_NAME;
constexpr std::string_view image_tag = ZELKOVAN_IMAGE_TAG;

// What modules hand over: one list, and one word before one entry point.
constexpr std::int64_t items_bytes = sizeof(FunctionItemList);
constexpr std::int64_t entries_bytes = 16;

// A field that a text fills up to NULs, or to the field's end.
template <std::size_t size>
bool holds(const char (&field)[size], std::string_view text) {
    return text.size() <= size && std::memcmp(field, text.data(), text.size()) == 0 &&
           std::all_of(field + text.size(), field + size, [](char c) { return c == '\0'; });
}

std::string last_loader_message() {
    const char* message = ::dlerror();
    return message != nullptr ? message : "no reason given";
}

struct ClaimedModules {
    std::mutex mutex;
    std::vector<EntryPoint> entries;

    // With the mutex held.
    [[nodiscard]] bool have(EntryPoint entry) const {
        return std::find(entries.begin(), entries.end(), entry) != entries.end();
    }
};

ClaimedModules& claimed_modules() {
    static ClaimedModules modules;
    return modules;
}

LoadError already_serving(const std::string& name) {
    return LoadError{"The module " + name + " already serves another host of this process."};
}

EntryPoint entry_of(void* handle) { return reinterpret_cast<EntryPoint>(::dlsym(handle, entry_name.data())); }

}  // namespace

// ---- The shared object

SharedObject::SharedObject(const std::filesystem::path& path) : path_{std::filesystem::absolute(path).string()} {
    ClaimedModules& modules = claimed_modules();
    const std::lock_guard lock{modules.mutex};  // nobody loads it between the question and the loading
    handle_.reset(::dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD));
    if (handle_ != nullptr) {
        if (modules.have(entry_of(handle_.get()))) throw already_serving(path.string());
        throw LoadError{"The module " + path_ +
                        " is loaded in this process already, by another copy of the host library or by the program "
                        "itself, and serves one host only: a second host needs a copy of the file."};
    }
    handle_.reset(::dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (handle_ == nullptr)
        throw LoadError{"The module " + path_ + " cannot be loaded: " + last_loader_message() + "."};
}

EntryPoint SharedObject::entry_point() const {
    const EntryPoint entry = entry_of(handle_.get());
    if (entry == nullptr)
        throw LoadError{"The module " + path_ + " has no entry point " + std::string{entry_name} + "."};
    return entry;
}

ColumnsEntry SharedObject::columns_entry() const {
    return reinterpret_cast<ColumnsEntry>(::dlsym(handle_.get(), columns_name.data()));
}

void SharedObject::Closer::operator()(void* handle) const noexcept { ::dlclose(handle); }

// ---- The claim

ModuleClaim::ModuleClaim(EntryPoint entry, const std::string& name) : entry_{entry} {
    ClaimedModules& modules = claimed_modules();
    const std::lock_guard lock{modules.mutex};
    if (modules.have(entry)) throw already_serving(name);
    modules.entries.push_back(entry);
}

ModuleClaim::~ModuleClaim() {
    ClaimedModules& modules = claimed_modules();
    const std::lock_guard lock{modules.mutex};
    std::erase(modules.entries, entry_);
}

HandedOverBlock::~HandedOverBlock() { memory_.release(block_, bytes_, ZELKOVAN_MEMORY_FLAGS); }

// ---- The walk

// Members are initialised in the order of the walk; each step needs those before it.
Registration::Registration(RegistrationHost host, EntryPoint entry)
    : host_{std::move(host)},
      image_{enter(entry)},
      entry_{find_registration_entry()},
      items_{host_.memory, request(ZELKOVAN_REQUEST_ITEMS, "its function items"), items_bytes},
      item_{checked_item()},
      entries_{host_.memory, request(ZELKOVAN_REQUEST_ENTRIES, "its entry points"), entries_bytes},
      dispatcher_{checked_dispatcher()} {}

void Registration::fail(const std::string& what) const {
    throw LoadError{"The module " + host_.module_name + " " + what + "."};
}

const ImageInformation* Registration::enter(EntryPoint entry) {
    const ImageInformation* image = nullptr;
    void* control_block = host_.control_block.words();
    void* process_block = host_.control_block.process_block();
    const auto exit = run_until_exit(host_.desk, [&] { image = entry(control_block, process_block); });
    if (exit)
        throw LoadError{"The module " + host_.module_name + " ended the process at its entry point, with code " +
                            std::to_string(exit->code) + " and detail " + std::to_string(exit->detail) + ".",
                        *exit};
    if (image == nullptr) fail("returned no image record from its entry point");
    return image;
}

RegistrationEntry* Registration::find_registration_entry() const {
    if (!holds(image_->tag, image_tag)) fail("has an image record without the tag " + std::string{image_tag});
    if (image_->magic != ZELKOVAN_IMAGE_MAGIC) fail("has an image record with the wrong magic number");
    if (image_->layout != ZELKOVAN_IMAGE_LAYOUT) fail("has an image record of another layout than 8");
    const auto* controls = static_cast<const ProgramControl* const*>(image_->program_controls);
    if (controls == nullptr) fail("has an image record without program controls");
    for (; *controls != nullptr; ++controls) {
        if (!holds((*controls)->name, program_name)) continue;
        if ((*controls)->entry == nullptr)
            fail("has a program control " + std::string{program_name} + " without an entry");
        return (*controls)->entry;
    }
    fail("has no program control named " + std::string{program_name});
}

void* Registration::request(std::int32_t number, const char* wanted) {
    void* block = nullptr;
    const auto exit = run_until_exit(host_.desk, [&] { block = entry_(number); });
    if (exit)
        throw LoadError{"The module " + host_.module_name + " ended the process when asked for " + wanted +
                            ", with code " + std::to_string(exit->code) + " and detail " +
                            std::to_string(exit->detail) + ".",
                        *exit};
    if (block == nullptr) fail(std::string{"gave nothing when asked for "} + wanted);
    return block;
}

const FunctionItem* Registration::checked_item() const {
    const auto* list = static_cast<const FunctionItemList*>(items_.get());
    if (list->count != 1 || list->items == nullptr) fail("offers other than one function");
    if (!holds(list->items->name, function_name)) fail("offers a function other than " + std::string{function_name});
    return list->items;
}

Dispatcher Registration::checked_dispatcher() const {
    void* dispatcher = static_cast<void* const*>(entries_.get())[1];
    if (dispatcher == nullptr) fail("names no dispatcher for " + std::string{function_name});
    return reinterpret_cast<Dispatcher>(dispatcher);
}

}  // namespace finance::host
