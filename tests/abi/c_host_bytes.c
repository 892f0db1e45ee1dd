/* A host in C that knows byte offsets and nothing else of the module: it loads zelkovan.so, plays the load protocol
 * with a control block full of junk, calls FINANCE, and looks at every byte that is its own before and after.
 *
 *     c_host_bytes path/to/zelkovan.so
 *
 * It includes no header of the module's: its numbers are a list of their own. One line for each check, a summary, exit
 * status 0 where all of them held and none was left out.
 */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "c_host_block.h"

enum { EXPECTED_CHECKS = 73 };

/* ---- Loading -------------------------------------------------------------------------------------------------- */

typedef const void* Entry(void* control, void* process);
typedef void* Registration(int request);
typedef uint32_t Dispatcher(void* context, double* result);
typedef void Copier(void* destination);

static Registration* registration;
static Dispatcher* dispatcher;

static void check_image(const unsigned char* image) {
    check(image == symbol("vi_mcn"), "the entry point answers with vi_mcn");
    check(memcmp(image, "ZOT_Image_Information=\0", 24) == 0, "byte 0: the tag");
    check(u32(image, 24) == UINT32_C(0xB0BDEBED), "byte 24: the magic number");
    check(u32(image, 28) == 0, "byte 28: 0");
    check(u64(image, 32) == 8, "byte 32: 8");
    check(memchr(image + 40, 0, 6) != NULL && image[40] != 0, "byte 40: a short version");
    check(memchr(image + 46, 0, 20) != NULL && image[46] != 0, "byte 46: a release");
    check(image[66 + 11] == 0 && image[66 + 3] == ' ' && image[66 + 6] == ' ', "byte 66: a date like Jan 01 2000");
    const void* const* controls = pointer(image, 96);
    check(controls == symbol("mcn_pcns"), "byte 96: mcn_pcns");
    check(strlen(pointer(image, 104)) > 0, "byte 104: a notice");
    check(memcmp(image + 112, "001\0\0\0\0", 8) == 0, "byte 112: 001");
    check(controls[0] == symbol("pcn_ZELKOVAN") && controls[1] == NULL, "one program control, then null");
}

static void check_program_control(const unsigned char* control) {
    check(memcmp(control, "\0\0\xFF\xFF\xFF\xFF\xFF\xFF", 8) == 0, "program control, byte 0: the header");
    check(u64(control, 8) == 1024 && u64(control, 16) == 1024, "bytes 8 and 16: 1024");
    check(memcmp(control + 24, "zelkovan", 8) == 0, "byte 24: zelkovan");
    check(u64(control, 32) == 0, "byte 32: 0");
    check(pointer(control, 40) == symbol("zelkovan"), "byte 40: the registration entry");
    check(u64(control, 48) == 1, "byte 48: 1");
    check(u64(control, 72) == 15, "byte 72: 15");
    registration = (Registration*)routine_at(control, 40);
}

static void check_items(void) {
    const unsigned char* items = registration(1);
    check(memory_calls == 1 && memory_seen_vector == (void*)memory_vector && memory_seen_size == 16 &&
              memory_seen_flags == 0x2006,
          "request 1 takes 16 bytes of host memory, flags 0x2006");
    check(items == memory_block && u32(items, 0) == 1 && pointer(items, 8) == symbol("fncitems"),
          "request 1: one item, fncitems");
    check(u32(items, 4) == 0x5C5C5C5C, "request 1 leaves bytes 4 to 7 alone");
    const unsigned char* item = pointer(items, 8);
    check(memcmp(item, "FINANCE\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 24) == 0, "the item is FINANCE");
    check(
        u32(item, 24) == 0 && u32(item, 28) == 2 && u64(item, 32) == 66 && u64(item, 40) == 512 && u64(item, 48) == 202,
        "the item's numbers");
    free(memory_block);
}

static void check_entries(void) {
    const unsigned char* entries = registration(2);
    check(memory_calls == 2 && memory_seen_size == 16 && memory_seen_flags == 0x2006, "request 2 takes 16 bytes");
    check(entries == memory_block && u64(entries, 0) == UINT64_C(0x5C5C5C5C5C5C5C5C),
          "request 2 leaves the first word alone");
    check(pointer(entries, 8) == symbol("fncfin"), "request 2: the dispatcher is fncfin");
    check(u64(entries, 16) == UINT64_C(0x5C5C5C5C5C5C5C5C), "request 2 writes nothing beyond its block");
    dispatcher = (Dispatcher*)routine_at(entries, 8);
    free(memory_block);

    check(registration(3) == NULL && registration(0) == NULL && registration(-1) == NULL && memory_calls == 2,
          "other requests: null, no memory taken");
}

static void load(const char* path) {
    static unsigned char process_block[64];
    memset(process_block, 0xA5, sizeof process_block);
    open_module(path);
    void* address = symbol("mcn_main");
    Entry* entry = (Entry*)routine_at(&address, 0);
    const unsigned char* image = entry(control_block, process_block);
    check_image(image);
    check_program_control(pointer(pointer(image, 96), 0));
    check_items();
    check_entries();
}

static void load_without_memory(void) {
    memory_out = 1;
    memset(marks, 0xEE, sizeof marks);
    for (int request = 1; request <= 2; ++request) {
        memset(c_host_seen, 0, sizeof c_host_seen);
        check(registration(request) == NULL, "no memory: null, should the exit service return");
        check(c_host_seen[0] == 1016 && c_host_seen[1] == 0, "no memory: exit with 1016 and 0");
        check(c_host_seen[SEEN_IDENTIFIER] == ((UINT64_C(39) << 32) | 4), "the exit service's identifier in r10");
        check(c_host_seen[SEEN_RSP] % 16 == 8, "the stack is aligned");
    }
    check(only_mark(39), "byte 39 of the marks is 0, no other changed");
    memory_out = 0;
}

/* ---- Calls ---------------------------------------------------------------------------------------------------- */

/* A call record: head of 40 bytes, slots of 16; numbers and a descriptor of 24 bytes elsewhere. */
enum { MAX_SLOTS = 8, RECORD_BYTES = 40 + 16 * MAX_SLOTS };

typedef struct Call {
    uint64_t record[RECORD_BYTES / 8];
    double numbers[MAX_SLOTS];
    uint64_t descriptor[3];
    char text[40];
    double result;
} Call;

static unsigned char* slot(Call* call, int i) { return (unsigned char*)call->record + 40 + 16 * i; }

/* A record full of junk with a name and numbers; type bytes have the host's mark, flags all of the host's bits. */
static void prepare(Call* call, const char* name, int count, const double* numbers) {
    memset(call, 0xA5, sizeof *call);
    memset(call->text, '?', sizeof call->text);
    memcpy(call->text, name, strlen(name));
    memcpy((unsigned char*)call->record + 32, &(int64_t){count}, 8);
    for (int i = 0; i < count; ++i) {
        slot(call, i)[0] = i == 0 ? 2 | 4 : 1 | 4;
        slot(call, i)[1] = 0xFE;
        void* value = i == 0 ? (void*)call->descriptor : (void*)&call->numbers[i];
        memcpy(slot(call, i) + 8, &value, sizeof value);
        if (i > 0) call->numbers[i] = numbers[i - 1];
    }
    memcpy((unsigned char*)call->descriptor + 8, &(uint32_t){(uint32_t)strlen(name)}, 4);
    char* text = call->text;
    memcpy((unsigned char*)call->descriptor + 16, &text, sizeof text);
}

static uint64_t bits(double x) { return u64(&x, 0); }
/* Calls, and compares the record with what it was, but for the result and the flag of one slot (or none: -1). */
static uint32_t call_and_compare(Call* call, int flagged, int* kept) {
    Call before = *call;
    if (flagged >= 0) slot(&before, flagged)[1] = 0xFF;
    const uint32_t status = dispatcher(call->record, &call->result);
    before.result = call->result;
    *kept = memcmp(&before, call, sizeof before) == 0;
    return status;
}

/* r P (1+r)^n / ((1+r)^n - 1), by multiplication in long double. */
static double payment(long double rate, int periods, long double amount) {
    long double growth = 1;
    for (int i = 0; i < periods; ++i) growth *= 1 + rate;
    return (double)-(rate * amount * growth / (growth - 1));
}

static int nearly(double a, double b) { return fabs(a - b) <= 1e-14 * fabs(b); }

static const double loan[] = {0.005, 360, 200000};

static void clear_log(void) { log_count = log_identifiers_right = log_stacks_aligned = 0; }

static void check_answers(void) {
    Call call;
    int kept;
    prepare(&call, "PMT", 4, loan);
    check(call_and_compare(&call, -1, &kept) == 0, "PMT answers");
    check(nearly(call.result, payment(0.005L, 360, 200000)), "PMT's value, against long double");
    check(kept, "PMT leaves the call's record alone");
    check(only_mark(39) == 0 && marks[39] == 0xEE && log_count == 0, "PMT enters no service");

    prepare(&call, "PMT     ", 4, loan);
    check(call_and_compare(&call, -1, &kept) == 0 && kept, "trailing blanks of the name do not count");
}

static void check_refused_arguments(void) {
    const double bad[] = {0.005, 2.5, 200000};
    Call call;
    int kept;
    prepare(&call, "PMT", 4, bad);
    check(call_and_compare(&call, 2, &kept) == 120836, "PMT refuses 2.5 periods");
    check(bits(call.result) == UINT64_C(0xFFFFFE0000000000), "its result is the missing value");
    check(kept, "it sets bit 0 of the second argument's flags and changes nothing else");

    prepare(&call, "PMT", 4, loan);
    memcpy(&call.numbers[1], &(uint64_t){UINT64_C(0xFFFFFE0000000000)}, 8);
    check(call_and_compare(&call, 1, &kept) == 120836 && kept, "a missing rate is refused with the same status");

    prepare(&call, "PMT", 4, loan);
    memset(slot(&call, 3) + 8, 0, 8);
    check(call_and_compare(&call, 3, &kept) == 120836 && kept, "so is an amount without a value pointer");
    check(log_count == 0, "refused arguments are not logged");
}

static void check_refused_counts(void) {
    Call call;
    int kept;
    prepare(&call, "PMT", 3, loan);
    const double untouched = call.result;
    check(call_and_compare(&call, -1, &kept) == 120836 && kept, "too few arguments: refused, nothing flagged");
    check(bits(call.result) == bits(untouched), "the result is left alone");
    check(log_count == 1 && strcmp(log_lines[0], "Not enough arguments for PMT ") == 0, "too few arguments: the line");
    check(c_host_seen[SEEN_IDENTIFIER] == ((UINT64_C(39) << 32) | 89), "the log service's identifier in r10");
    check(only_mark(39), "byte 39 of the marks is 0, no other changed");

    const double many[] = {0.005, 360, 200000, 0, 0, 0};
    prepare(&call, "PMT", 7, many);
    check(call_and_compare(&call, -1, &kept) == 120836 && kept, "too many arguments: refused, nothing flagged");
    check(log_count == 2 && strcmp(log_lines[1], "Too many arguments for PMT ") == 0, "too many arguments: the line");
}

static void check_unknown_name(void) {
    Call call;
    int kept;
    clear_log();
    prepare(&call, " PMT", 4, loan);
    const double untouched = call.result;
    check(call_and_compare(&call, 0, &kept) == 120836, "a leading blank makes the name unknown");
    check(kept, "the name is flagged, nothing else changed");
    check(bits(call.result) == bits(untouched), "the result is left alone");
    check(strcmp(log_lines[0], "The First argument of the Finance function can be ") == 0, "usage, first line");
    check(strcmp(log_lines[1], "one of the following") == 0, "usage, second line");
    check(log_count > 4 && strncmp(log_lines[2], "    ", 4) == 0 && strlen(log_lines[2]) > 5, "usage, first name");
    check(strcmp(log_lines[log_count - 2], " ") == 0 && strcmp(log_lines[log_count - 1], " ") == 0,
          "usage, two lines of a blank");
    check(log_identifiers_right == log_count && log_stacks_aligned == log_count,
          "each line came with its identifier, on an aligned stack");
}

static void call_finance(void) {
    static unsigned char before[PICTURE_BYTES];
    static unsigned char after[PICTURE_BYTES];
    memset(marks, 0xEE, sizeof marks);
    clear_log();
    take_picture(before);
    check_answers();
    check_refused_arguments();
    check_refused_counts();
    check_unknown_name();
    take_picture(after);
    check(memcmp(before, after, sizeof before) == 0, "control block, vectors and tables are as they were");
}

/* ---- Adapters ------------------------------------------------------------------------------------------------- */

static void adapt(const char* name, int slot_number, int widened) {
    char sentence[96];
    void* vector[2] = {address_of((Routine*)unexpected), address_of((Routine*)unexpected)};
    vector[slot_number] = address_of(c_host_record_entry);
    for (int i = 0; i < 16; ++i) c_host_wanted[i] = UINT64_C(0x1111111111111111) * (uint64_t)(i + 1);
    c_host_wanted[0] = word(vector);
    c_host_wanted[widened] = UINT64_C(0x7777777780000001); /* as 32 bits: -2^31 + 1 */
    memset(c_host_seen, 0, sizeof c_host_seen);
    c_host_adapter_call(symbol(name));
    int same = 1;
    for (int i = 0; i < 13; ++i) {
        if (i == SEEN_IDENTIFIER || i == SEEN_RSP || i == widened) continue;
        if (c_host_seen[i] != c_host_wanted[i]) same = 0;
    }
    snprintf(sentence, sizeof sentence, "%s: argument %d widened with its sign", name, widened + 1);
    check(c_host_seen[widened] == UINT64_C(0xFFFFFFFF80000001), sentence);
    snprintf(sentence, sizeof sentence, "%s: slot %d, all other registers, al and stack words as given", name,
             slot_number);
    check(same, sentence);
}

static void call_helpers(void) {
    adapt("vmalloc_handler", 0, 2);
    adapt("vmalcp_handler", 0, 2);
    adapt("vmfree_handler", 1, 3);

    unsigned char version[208 + 16];
    memset(version, 0x5C, sizeof version);
    void* address = symbol("kxvercn1");
    ((Copier*)routine_at(&address, 0))(version);
    check(strcmp(pointer(version, 32), "base") == 0 && strcmp(pointer(version, 48), "fnc") == 0 &&
              strcmp(pointer(version, 72), "version") == 0 && strcmp(pointer(version, 80), "::") == 0,
          "the version record's words");
    check(u64(version, 17 * 8) == 0 && u64(version, 200) == 0 && u64(version, 208) == UINT64_C(0x5C5C5C5C5C5C5C5C),
          "the version record has 208 bytes, nine words of them null");
}

int main(int count, char** arguments) {
    if (count != 2) return fprintf(stderr, "usage: c_host_bytes path/to/zelkovan.so\n"), 2;
    setvbuf(stdout, NULL, _IOLBF, 0);
    build_control_block();
    load(arguments[1]);
    load_without_memory();
    call_finance();
    call_helpers();
    const int complete = checks == EXPECTED_CHECKS;
    printf("%d checks of %d, %d failed%s\n", checks, EXPECTED_CHECKS, failures, complete ? "" : ": checks are missing");
    return failures == 0 && complete ? 0 : 1;
}
