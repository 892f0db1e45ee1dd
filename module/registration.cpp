// How the host loads the module: entry point, the records that the loader reads, the registration entry, the version.
//
//  (1) mcn_main keeps both anchors and the toolkit handle, and answers with the image record. It cannot fail.
//  (2) The image record leads to the program control, and that to the registration entry.
//  (3) Request 1 gives the host the function items, request 2 the dispatcher, each in a block of the host's memory that
//      is the host's from then on. Any other request: null.
//  (4) Without memory to register the module cannot go on: the host is asked to end the process, code 1016.
#include "module/registration.hpp"

#include <array>
#include <cstddef>
#include <cstring>

#include "abi/host_control.hpp"
#include "abi/host_services.hpp"
#include "build_info.h"

void* v_global_gcb_anchor = nullptr;
void* v_global_pidb_anchor = nullptr;
std::uint64_t Exported_KXHandle = 0;

namespace finance {

namespace {

constexpr std::uint64_t header_word = 0xFFFFFFFFFFFF0000;  // the bytes 00 00 FF FF FF FF FF FF

constexpr char hot_fix_number[] = "ZOT_VERSION_HOTFIX_NUMBER=                        ";
constexpr char image_description[] = "ZOT_IMAGE_DESCRIPTION=                            ";

// A word of the version record: a text, a number or nothing.
union VersionWord {
    const char* text;
    std::uint64_t number;
};

constexpr std::size_t version_words = ZELKOVAN_VERSION_BYTES / sizeof(VersionWord);

constexpr std::array<VersionWord, version_words> info{{
    {.text = ZELKOVAN_RELEASE},
    {.text = ZELKOVAN_SOURCE_BRANCH},
    {.text = ""},
    {.number = ZELKOVAN_BUILD_SECONDS},
    {.text = "base"},
    {.text = ZELKOVAN_BUILD_IDENTIFIER},
    {.text = "fnc"},
    {.text = ZELKOVAN_BUILD_HASH},
    {.text = ""},
    {.text = "version"},
    {.text = "::"},
    {.text = ""},
    {.text = hot_fix_number},
    {.text = ""},
    {.text = image_description},
    {.text = ZELKOVAN_BUILD_HOST},
    {.text = ZELKOVAN_BUILD_TIME},
}};

}  // namespace

void himodcn() {}

void* xfmuent(std::int32_t request, std::uint32_t count, const FunctionItem* items, const EntryPointAddress* entries) {
    switch (request) {
        case ZELKOVAN_REQUEST_ITEMS: {
            auto* list = static_cast<FunctionItemList*>(host_allocate(sizeof(FunctionItemList)));
            if (list == nullptr) break;
            list->count = count;
            list->items = items;
            return list;
        }
        case ZELKOVAN_REQUEST_ENTRIES: {
            const std::size_t bytes = count * sizeof(EntryPointAddress);
            auto* list = static_cast<EntryPointAddress*>(
                host_allocate(static_cast<std::int64_t>(sizeof(EntryPointAddress) + bytes)));
            if (list == nullptr) break;
            if (count > 0) std::memcpy(list + 1, entries, bytes);  // word 0 stays as the host gave it
            return list;
        }
        default:
            return nullptr;
    }
    xexit(ZELKOVAN_EXIT_WITHOUT_MEMORY, 0);
    return nullptr;
}

}  // namespace finance

const ImageInformation vi_mcn = {
    .tag = ZELKOVAN_IMAGE_TAG,
    .magic = ZELKOVAN_IMAGE_MAGIC,
    .reserved = 0,
    .layout = ZELKOVAN_IMAGE_LAYOUT,
    .short_version = ZELKOVAN_SHORT_VERSION,
    .release = ZELKOVAN_RELEASE,
    .build_date = ZELKOVAN_BUILD_DATE,
    .program_controls = mcn_pcns,
    .notice = "zelkovan: financial calculations for the function FINANCE. " ZELKOVAN_LICENSE,
    .sequence = "001",
};

const ProgramControl* const mcn_pcns[2] = {&pcn_ZELKOVAN, nullptr};

const ProgramControl pcn_ZELKOVAN = {
    .header = finance::header_word,
    .first_size = 1024,
    .second_size = 1024,
    .name = {'z', 'e', 'l', 'k', 'o', 'v', 'a', 'n'},
    .reserved = 0,
    .entry = zelkovan,
    .entries = 1,
    .first_build = ZELKOVAN_BUILD_NUMBER,
    .second_build = ZELKOVAN_BUILD_SECONDS,
    .kind = 15,
};

const FunctionItem fncitems = {
    .name = ZELKOVAN_FUNCTION_NAME,
    .first_property = 0,
    .second_property = 2,
    .third_property = 66,
    .fourth_property = 512,
    .fifth_property = 202,
};

const ImageInformation* mcn_main(void* gcb_anchor, void* pidb_anchor) {
    v_global_gcb_anchor = gcb_anchor;
    v_global_pidb_anchor = pidb_anchor;
    finance::himodcn();
    Exported_KXHandle = *finance::gcb_word(finance::GcbWord::toolkit);
    return &vi_mcn;
}

void* zelkovan(std::int32_t request, ...) {
    switch (request) {
        case ZELKOVAN_REQUEST_ITEMS:
            return finance::xfmuent(request, 1, &fncitems, nullptr);
        case ZELKOVAN_REQUEST_ENTRIES: {
            const finance::EntryPointAddress entries[] = {fncfin};
            return finance::xfmuent(request, 1, nullptr, entries);
        }
        default:
            return nullptr;
    }
}

void kxvercn1(void* destination) {
    auto* words = static_cast<finance::VersionWord*>(destination);
    for (std::size_t i = finance::version_words; i-- > 0;) words[i] = finance::info[i];
}
