// A module of the tests' own. FAKE_BEHAVIOUR says what is wrong with it; a good one offers commands that reach every
// service of the host.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "abi/host_control.hpp"
#include "abi/host_services.hpp"
#include "abi/zelkovan.h"

extern "C" {
void* v_global_gcb_anchor = nullptr;
void* v_global_pidb_anchor = nullptr;
}

namespace finance::test {
namespace {

enum class Behaviour : std::uint8_t {
    good,
    null_image,
    exit_at_entry,
    wrong_tag,
    tag_with_a_tail,
    wrong_magic,
    wrong_layout,
    without_controls,
    other_program,
    without_registration,
    null_items,
    two_items,
    without_item,
    other_item,
    exit_at_items,
    null_entries,
    exit_at_entries,
    without_dispatcher,
    without_entry,
};

constexpr bool is(Behaviour behaviour) { return behaviour == Behaviour::FAKE_BEHAVIOUR; }

// ---- Commands

struct Request {
    HostCallContext* context;
    double* result;

    [[nodiscard]] ArgSlot& slot(std::int64_t i) const { return reinterpret_cast<ArgSlot*>(context + 1)[i]; }
    [[nodiscard]] double number(std::int64_t i) const { return *static_cast<const double*>(slot(i).value); }
    [[nodiscard]] std::int32_t whole(std::int64_t i) const { return static_cast<std::int32_t>(number(i)); }
    [[nodiscard]] std::string_view text(std::int64_t i) const {
        if (slot(i).value == nullptr) return {};
        const auto* descriptor = static_cast<const CharacterDescriptor*>(slot(i).value);
        return {descriptor->text, descriptor->length};
    }
    std::uint32_t answer(double value) const {
        if (result != nullptr) *result = value;
        return ZELKOVAN_STATUS_SUCCESS;
    }
    [[nodiscard]] std::uint32_t refuse(std::int64_t i) const {
        slot(i).flags |= ZELKOVAN_FLAG_INVALID;
        return ZELKOVAN_STATUS_INVALID_ARGUMENT;
    }
};

void log_text(std::string_view text) { xpslog("%.*s", static_cast<int>(text.size()), text.data()); }

std::uint32_t sum(const Request& in) {
    double total = 0.0;
    for (std::int64_t i = 1; i < in.context->count; ++i) {
        if (in.slot(i).value == nullptr) return in.refuse(i);
        total += in.number(i);
    }
    return in.answer(total);
}

// text, whole number, number
std::uint32_t log(const Request& in) {
    const std::string_view text = in.text(1);
    xpslog("%.*s|%d|%g", static_cast<int>(text.size()), text.data(), in.whole(2), in.number(3));
    return in.answer(1.0);
}

// A character that the C locale cannot write.
std::uint32_t log_unprintable(const Request& in) {
    xpslog("%ls", L"\u20AC");
    return in.answer(0.0);
}

std::uint32_t note(const Request& in) {
    xpmlog(in.whole(1), in.whole(2));
    return in.answer(0.0);
}

std::uint32_t date(const Request& in) { return in.answer(zmdy(in.number(1), in.number(2), in.number(3))); }

std::uint32_t convert(const Request& in, void (*service)(char*, std::int64_t)) {
    char work[32];
    const std::string_view text = in.text(1);
    std::memcpy(work, text.data(), text.size());
    service(work, static_cast<std::int64_t>(text.size()));
    log_text({work, text.size()});
    return in.answer(0.0);
}

std::uint32_t lower(const Request& in) { return convert(in, wzstrlo); }

std::uint32_t upper(const Request& in) { return convert(in, wzstrup); }

// text, length of the destination (8 bytes are shown)
std::uint32_t translate(const Request& in) {
    const std::string_view text = in.text(1);
    for (auto* service : {wzsxcch, wzsxrch}) {
        char work[8];
        std::memset(work, '#', sizeof work);
        service(text.data(), static_cast<std::int64_t>(text.size()), work, in.whole(2), 1);
        log_text({work, sizeof work});
    }
    return in.answer(0.0);
}

std::uint32_t compare(const Request& in) {
    const std::string_view a = in.text(1);
    const std::string_view b = in.text(2);
    return in.answer(
        wzsxcmn(a.data(), static_cast<std::int64_t>(a.size()), b.data(), static_cast<std::int64_t>(b.size()), 0));
}

// Tells of each argument its type and flag bytes and what is behind it.
std::uint32_t describe(const Request& in) {
    for (std::int64_t i = 1; i < in.context->count; ++i) {
        const ArgSlot& slot = in.slot(i);
        const bool numeric = (slot.type & ZELKOVAN_TYPE_NUMERIC) != 0;
        const auto length = slot.value != nullptr && !numeric ? static_cast<int>(in.text(i).size()) : 0;
        if (slot.value == nullptr) {
            xpslog("%d/%d no value", slot.type, slot.flags);
        } else if (numeric) {
            xpslog("%d/%d %g", slot.type, slot.flags, in.number(i));
        } else if (in.text(i).data() == nullptr) {
            xpslog("%d/%d no text", slot.type, slot.flags);
        } else {
            xpslog("%d/%d '%.*s'", slot.type, slot.flags, length, in.text(i).data());
        }
    }
    return in.answer(in.context->mode);
}

std::uint32_t note_counter(const Request& in) { return in.answer(in.context->notes_written); }

// byte of the call record, bits of it
std::uint32_t flip(const Request& in) {
    const auto bits = static_cast<unsigned char>(in.whole(2));
    auto* byte = reinterpret_cast<unsigned char*>(in.context) + in.whole(1);
    *byte = static_cast<unsigned char>(*byte ^ bits);
    return in.answer(0.0);
}

std::uint32_t end(const Request& in) {
    xexit(in.whole(1), in.whole(2));
    return ZELKOVAN_STATUS_INVALID_ARGUMENT;
}

// Jumps to a service that no host offers, as the stubs do: identifier in r10.
[[noreturn]] std::uint32_t unoffered(const Request&) {
    void* routine = gcb_pointer<void**>(GcbWord::service_vectors)[40][7];
    asm volatile(
        "andq $-16, %%rsp\n\t"
        "movabsq $0x2800000007, %%r10\n\t"
        "callq *%0"
        :
        : "a"(routine)
        : "r10", "memory");
    std::abort();
}

struct Command {
    std::string_view name;
    std::uint32_t (*run)(const Request& in);
};

constexpr Command commands[] = {
    {"SUM", sum},
    {"LOG", log},
    {"LOG UNPRINTABLE", log_unprintable},
    {"NOTE", note},
    {"NOTE COUNTER", note_counter},
    {"DATE", date},
    {"LOWER", lower},
    {"UPPER", upper},
    {"TRANSLATE", translate},
    {"FLIP", flip},
    {"EXIT", end},
    {"COMPARE", compare},
    {"DESCRIBE", describe},
    {"UNOFFERED", unoffered},
};

std::uint32_t dispatch(HostCallContext* context, double* result) {
    const Request request{context, result};
    const std::string_view name = request.text(0);
    for (const Command& command : commands) {
        if (command.name == name) return command.run(request);
    }
    return request.refuse(0);
}

// ---- Registration

constexpr std::int64_t exit_code = 1016;
constexpr std::int64_t exit_detail = 7;

FunctionItem item{"FINANCE", 0, 2, 66, 512, 202};

void* new_items() {
    if (is(Behaviour::exit_at_items)) xexit(exit_code, exit_detail);
    if (is(Behaviour::null_items)) return nullptr;
    if (is(Behaviour::other_item)) item.name[7] = 'S';
    auto* list = static_cast<FunctionItemList*>(host_allocate(sizeof(FunctionItemList)));
    list->count = is(Behaviour::two_items) ? 2 : 1;
    list->items = is(Behaviour::without_item) ? nullptr : &item;
    return list;
}

void* new_entries() {
    if (is(Behaviour::exit_at_entries)) xexit(exit_code, exit_detail);
    if (is(Behaviour::null_entries)) return nullptr;
    auto* list = static_cast<void**>(host_allocate(2 * sizeof(void*)));
    list[1] = is(Behaviour::without_dispatcher) ? nullptr : reinterpret_cast<void*>(&dispatch);
    return list;
}

void* answer_request(std::int32_t request, ...) {
    if (request == ZELKOVAN_REQUEST_ITEMS) return new_items();
    return request == ZELKOVAN_REQUEST_ENTRIES ? new_entries() : nullptr;
}

constexpr ProgramControl control(char last_letter, RegistrationEntry* entry) {
    ProgramControl made{0, 1024, 1024, {'z', 'e', 'l', 'k', 'o', 'v', 'a', last_letter}, 0, entry, 1, 1, 1, 15};
    return made;
}

const ProgramControl another = control('x', nullptr);
const ProgramControl own = control('n', is(Behaviour::without_registration) ? nullptr : answer_request);
const ProgramControl* const controls[] = {&another, is(Behaviour::other_program) ? nullptr : &own, nullptr};

ImageInformation made_image() {
    ImageInformation image{"ZOT_Image_Information=",
                           0xB0BDEBED,
                           0,
                           8,
                           "1.00",
                           "1.00.00",
                           "Jan 01 2000",
                           is(Behaviour::without_controls) ? nullptr : controls,
                           "a fake",
                           "001"};
    if (is(Behaviour::wrong_tag)) image.tag[0] = 'z';
    if (is(Behaviour::tag_with_a_tail)) image.tag[23] = 'x';
    if (is(Behaviour::wrong_magic)) image.magic ^= 1U;
    if (is(Behaviour::wrong_layout)) image.layout = 9;
    return image;
}

}  // namespace
}  // namespace finance::test

const ImageInformation* mcn_main(void* gcb_anchor, void* pidb_anchor) {
    using namespace finance::test;
    static const ImageInformation image = made_image();
    v_global_gcb_anchor = gcb_anchor;
    v_global_pidb_anchor = pidb_anchor;
    if (is(Behaviour::exit_at_entry)) xexit(exit_code, exit_detail);
    return is(Behaviour::null_image) ? nullptr : &image;
}
