/* A host in C that knows byte offsets and nothing else of the module: it loads zelkovan.so, plays the load protocol
 * with a control block full of junk, calls FINANCE, and looks at every byte that is its own before and after.
 *
 *     c_host_bytes path/to/zelkovan.so
 *
 * It includes no header of the module's: its numbers are a list of their own. One line for each check, a summary, exit
 * status 0 where all of them held and none was left out.
 */
#include <dlfcn.h>
#include <math.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { EXPECTED_CHECKS = 73 };

static int checks;
static int failures;

static void check(int holds, const char* what) {
    ++checks;
    if (!holds) ++failures;
    printf("%s  %s\n", holds ? "ok    " : "FAILED", what);
}

/* ---- Services ------------------------------------------------------------------------------------------------- */

/* What arrived: rdi rsi rdx rcx r8 r9, rax, r10, rsp, two stack words, xmm0 and xmm7. */
uint64_t c_host_seen[16];

void c_host_log_entry(void);
void c_host_record_entry(void);
void c_host_adapter_call(void* target);
uint64_t c_host_wanted[16]; /* the same, as c_host_adapter_call sets it */

__asm__(
    "    .text\n"
    "    .type c_host_note_registers, @function\n"
    "c_host_note_registers:\n" /* after a call from an entry: its caller's words are 8 bytes further */
    "    leaq c_host_seen(%rip), %r11\n"
    "    movq %rdi, 0(%r11)\n"
    "    movq %rsi, 8(%r11)\n"
    "    movq %rdx, 16(%r11)\n"
    "    movq %rcx, 24(%r11)\n"
    "    movq %r8, 32(%r11)\n"
    "    movq %r9, 40(%r11)\n"
    "    movq %rax, 48(%r11)\n"
    "    movq %r10, 56(%r11)\n"
    "    leaq 8(%rsp), %r10\n"
    "    movq %r10, 64(%r11)\n"
    "    movq 16(%rsp), %r10\n"
    "    movq %r10, 72(%r11)\n"
    "    movq 24(%rsp), %r10\n"
    "    movq %r10, 80(%r11)\n"
    "    movsd %xmm0, 88(%r11)\n"
    "    movsd %xmm7, 96(%r11)\n"
    "    ret\n"
    "    .size c_host_note_registers, . - c_host_note_registers\n"
    "    .globl c_host_log_entry\n"
    "    .type c_host_log_entry, @function\n"
    "c_host_log_entry:\n" /* the log service: on to C, all arguments as they came */
    "    call c_host_note_registers\n"
    "    jmp c_host_log\n"
    "    .size c_host_log_entry, . - c_host_log_entry\n"
    "    .globl c_host_record_entry\n"
    "    .type c_host_record_entry, @function\n"
    "c_host_record_entry:\n" /* any other routine */
    "    call c_host_note_registers\n"
    "    movabsq $0x1122334455667788, %rax\n"
    "    ret\n"
    "    .size c_host_record_entry, . - c_host_record_entry\n"
    "    .globl c_host_adapter_call\n"
    "    .type c_host_adapter_call, @function\n"
    "c_host_adapter_call:\n"
    "    subq $8, %rsp\n"
    "    leaq c_host_wanted(%rip), %r11\n"
    "    pushq 80(%r11)\n"
    "    pushq 72(%r11)\n"
    "    movq %rdi, %r10\n"
    "    movq 0(%r11), %rdi\n"
    "    movq 8(%r11), %rsi\n"
    "    movq 16(%r11), %rdx\n"
    "    movq 24(%r11), %rcx\n"
    "    movq 32(%r11), %r8\n"
    "    movq 40(%r11), %r9\n"
    "    movq 48(%r11), %rax\n"
    "    movsd 88(%r11), %xmm0\n"
    "    movsd 96(%r11), %xmm7\n"
    "    call *%r10\n"
    "    addq $24, %rsp\n"
    "    ret\n"
    "    .size c_host_adapter_call, . - c_host_adapter_call\n");

enum { SEEN_AL = 6, SEEN_IDENTIFIER = 7, SEEN_RSP = 8, SEEN_STACK = 9, SEEN_XMM0 = 11, SEEN_XMM7 = 12 };

static char log_lines[128][96];
static int log_count;
static int log_identifiers_right;
static int log_stacks_aligned;

__attribute__((used, visibility("hidden"))) void c_host_log(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(log_lines[log_count], sizeof log_lines[0], format, arguments);
    va_end(arguments);
    if (log_count < 127) ++log_count;
    if (c_host_seen[SEEN_IDENTIFIER] == ((UINT64_C(39) << 32) | 89)) ++log_identifiers_right;
    if (c_host_seen[SEEN_RSP] % 16 == 8) ++log_stacks_aligned;
}

static void upper_service(unsigned char* text, int64_t length) {
    for (int64_t i = 0; i < length; ++i) {
        if (text[i] >= 'a' && text[i] <= 'z') text[i] = (unsigned char)(text[i] - 32);
    }
}

__attribute__((noreturn)) static void unexpected(void) {
    printf("FAILED  a service was reached that no check asks for\n");
    exit(2);
}

/* ---- Memory --------------------------------------------------------------------------------------------------- */

static void* memory_vector[4];
static int memory_calls;
static int memory_out;
static void* memory_seen_vector;
static int64_t memory_seen_size;
static int64_t memory_seen_flags;
static unsigned char* memory_block;

static void* allocate(void* vector, int64_t size, int64_t flags) {
    ++memory_calls;
    memory_seen_vector = vector;
    memory_seen_size = size;
    memory_seen_flags = flags;
    if (memory_out) return NULL;
    memory_block = malloc((size_t)size + 16);
    if (memory_block == NULL) exit(2);
    memset(memory_block, 0x5C, (size_t)size + 16);
    return memory_block;
}

/* ---- The control block ---------------------------------------------------------------------------------------- */

#define JUNK UINT64_C(0xA5A5A5A5A5A5A5A5)

static uint64_t control_block[128];
static void* slots_of_vector[3][512]; /* text services, log and exit, all others */
static void* vectors[256];
static unsigned char marks[256];
static unsigned char collating_table[256];
static unsigned char translation_tables[5][256];
static void* translation_pointers[8];
static uint64_t locale_block[8];
static unsigned char mode_record[96];

static uint64_t word(const void* address) { return (uint64_t)(uintptr_t)address; }

/* A function's address as data, which C has no conversion for. */
typedef void Routine(void);
static void* address_of(Routine* routine) {
    void* address;
    memcpy(&address, &routine, sizeof address);
    return address;
}

static uint64_t exit_code;
static uint64_t exit_detail;
static uint64_t exit_identifier;

static void build_control_block(void) {
    for (int i = 0; i < 128; ++i) control_block[i] = JUNK;
    for (int v = 0; v < 3; ++v) {
        for (int s = 0; s < 512; ++s) slots_of_vector[v][s] = address_of((Routine*)unexpected);
    }
    for (int v = 0; v < 256; ++v) vectors[v] = slots_of_vector[2];
    vectors[0] = slots_of_vector[0];
    vectors[39] = slots_of_vector[1];
    slots_of_vector[0][331] = address_of((Routine*)upper_service);
    slots_of_vector[1][89] = address_of(c_host_log_entry);
    slots_of_vector[1][4] = address_of(c_host_record_entry);
    for (int i = 0; i < 256; ++i) {
        marks[i] = 0xEE;
        collating_table[i] = (unsigned char)i;
        for (int m = 0; m < 5; ++m) translation_tables[m][i] = (unsigned char)i;
    }
    for (int i = 0; i < 8; ++i) {
        translation_pointers[i] = (void*)(uintptr_t)JUNK;
        locale_block[i] = JUNK;
    }
    for (int m = 0; m < 5; ++m) translation_pointers[2 + m] = translation_tables[m];
    memset(mode_record, 0xA5, sizeof mode_record);
    mode_record[72] = 0;
    locale_block[3] = word(mode_record);
    memory_vector[0] = address_of((Routine*)allocate);
    memory_vector[1] = address_of((Routine*)unexpected);
    memory_vector[2] = memory_vector[3] = (void*)(uintptr_t)JUNK;
    control_block[0] = word(vectors);
    control_block[1] = word(marks);
    control_block[6] = word(collating_table);
    control_block[10] = word(memory_vector);
    control_block[13] = word(locale_block);
    control_block[27] = word(translation_pointers);
}

/* All that is the host's, one after the other. Marks are looked at apart. */
enum {
    PICTURE_BYTES = sizeof control_block + sizeof slots_of_vector + sizeof vectors + sizeof collating_table +
                    sizeof translation_tables + sizeof translation_pointers + sizeof locale_block + sizeof mode_record +
                    sizeof memory_vector
};

static void take_picture(unsigned char* picture) {
#define PUT(what) (memcpy(picture, what, sizeof what), picture += sizeof what)
    PUT(control_block);
    PUT(slots_of_vector);
    PUT(vectors);
    PUT(collating_table);
    PUT(translation_tables);
    PUT(translation_pointers);
    PUT(locale_block);
    PUT(mode_record);
    PUT(memory_vector);
#undef PUT
}

static int only_mark(int vector) {
    int right = marks[vector] == 0;
    for (int v = 0; v < 256; ++v) {
        if (v != vector && marks[v] != 0xEE) right = 0;
    }
    return right;
}

static uint64_t u64(const void* record, size_t offset) {
    uint64_t value;
    memcpy(&value, (const unsigned char*)record + offset, sizeof value);
    return value;
}

static uint32_t u32(const void* record, size_t offset) {
    uint32_t value;
    memcpy(&value, (const unsigned char*)record + offset, sizeof value);
    return value;
}

static const void* pointer(const void* record, size_t offset) { return (const void*)(uintptr_t)u64(record, offset); }

/* ---- Loading -------------------------------------------------------------------------------------------------- */

typedef const void* Entry(void* control, void* process);
typedef void* Registration(int request);
typedef uint32_t Dispatcher(void* context, double* result);
typedef void Copier(void* destination);

static void* library;
static Registration* registration;
static Dispatcher* dispatcher;

static void* symbol(const char* name) {
    void* found = dlsym(library, name);
    if (found == NULL) {
        printf("FAILED  %s is not exported\n", name);
        exit(2);
    }
    return found;
}

static void load(const char* path) {
    library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
        printf("FAILED  %s\n", dlerror());
        exit(2);
    }
    Entry* entry;
    void* address = symbol("mcn_main");
    memcpy(&entry, &address, sizeof entry);
    static unsigned char process_block[64];
    memset(process_block, 0xA5, sizeof process_block);
    const unsigned char* image = entry(control_block, process_block);

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

    const unsigned char* control = controls[0];
    check(memcmp(control, "\0\0\xFF\xFF\xFF\xFF\xFF\xFF", 8) == 0, "program control, byte 0: the header");
    check(u64(control, 8) == 1024 && u64(control, 16) == 1024, "bytes 8 and 16: 1024");
    check(memcmp(control + 24, "zelkovan", 8) == 0, "byte 24: zelkovan");
    check(u64(control, 32) == 0, "byte 32: 0");
    check(pointer(control, 40) == symbol("zelkovan"), "byte 40: the registration entry");
    check(u64(control, 48) == 1, "byte 48: 1");
    check(u64(control, 72) == 15, "byte 72: 15");
    address = (void*)(uintptr_t)u64(control, 40);
    memcpy(&registration, &address, sizeof registration);

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

    const unsigned char* entries = registration(2);
    check(memory_calls == 2 && memory_seen_size == 16 && memory_seen_flags == 0x2006, "request 2 takes 16 bytes");
    check(entries == memory_block && u64(entries, 0) == UINT64_C(0x5C5C5C5C5C5C5C5C),
          "request 2 leaves the first word alone");
    check(pointer(entries, 8) == symbol("fncfin"), "request 2: the dispatcher is fncfin");
    check(u64(entries, 16) == UINT64_C(0x5C5C5C5C5C5C5C5C), "request 2 writes nothing beyond its block");
    address = (void*)(uintptr_t)u64(entries, 8);
    memcpy(&dispatcher, &address, sizeof dispatcher);
    free(memory_block);

    check(registration(3) == NULL && registration(0) == NULL && registration(-1) == NULL && memory_calls == 2,
          "other requests: null, no memory taken");
}

static void load_without_memory(void) {
    memory_out = 1;
    memset(marks, 0xEE, sizeof marks);
    for (int request = 1; request <= 2; ++request) {
        memset(c_host_seen, 0, sizeof c_host_seen);
        check(registration(request) == NULL, "no memory: null, should the exit service return");
        exit_code = c_host_seen[0];
        exit_detail = c_host_seen[1];
        exit_identifier = c_host_seen[SEEN_IDENTIFIER];
        check(exit_code == 1016 && exit_detail == 0, "no memory: exit with 1016 and 0");
        check(exit_identifier == ((UINT64_C(39) << 32) | 4), "the exit service's identifier in r10");
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

static void call_finance(void) {
    static unsigned char before[PICTURE_BYTES];
    static unsigned char after[PICTURE_BYTES];
    const double loan[] = {0.005, 360, 200000};
    Call call;
    int kept;

    memset(marks, 0xEE, sizeof marks);
    log_count = log_identifiers_right = log_stacks_aligned = 0;
    take_picture(before);

    prepare(&call, "PMT", 4, loan);
    check(call_and_compare(&call, -1, &kept) == 0, "PMT answers");
    check(nearly(call.result, payment(0.005L, 360, 200000)), "PMT's value, against long double");
    check(kept, "PMT leaves the call's record alone");
    check(only_mark(39) == 0 && marks[39] == 0xEE && log_count == 0, "PMT enters no service");

    prepare(&call, "PMT     ", 4, loan);
    check(call_and_compare(&call, -1, &kept) == 0 && kept, "trailing blanks of the name do not count");

    const double bad[] = {0.005, 2.5, 200000};
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

    prepare(&call, "PMT", 3, loan);
    double untouched = call.result;
    check(call_and_compare(&call, -1, &kept) == 120836 && kept, "too few arguments: refused, nothing flagged");
    check(bits(call.result) == bits(untouched), "the result is left alone");
    check(log_count == 1 && strcmp(log_lines[0], "Not enough arguments for PMT ") == 0, "too few arguments: the line");
    check(c_host_seen[SEEN_IDENTIFIER] == ((UINT64_C(39) << 32) | 89), "the log service's identifier in r10");
    check(only_mark(39), "byte 39 of the marks is 0, no other changed");

    const double many[] = {0.005, 360, 200000, 0, 0, 0};
    prepare(&call, "PMT", 7, many);
    check(call_and_compare(&call, -1, &kept) == 120836 && kept, "too many arguments: refused, nothing flagged");
    check(log_count == 2 && strcmp(log_lines[1], "Too many arguments for PMT ") == 0, "too many arguments: the line");

    log_count = log_identifiers_right = log_stacks_aligned = 0;
    prepare(&call, " PMT", 4, loan);
    untouched = call.result;
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
    Copier* copy;
    void* address = symbol("kxvercn1");
    memcpy(&copy, &address, sizeof copy);
    copy(version);
    check(strcmp(pointer(version, 32), "base") == 0 && strcmp(pointer(version, 48), "fnc") == 0 &&
              strcmp(pointer(version, 72), "version") == 0 && strcmp(pointer(version, 80), "::") == 0,
          "the version record's words");
    check(u64(version, 17 * 8) == 0 && u64(version, 200) == 0 && u64(version, 208) == UINT64_C(0x5C5C5C5C5C5C5C5C),
          "the version record has 208 bytes, nine words of them null");
}

int main(int count, char** arguments) {
    if (count != 2) {
        fprintf(stderr, "usage: c_host_bytes path/to/zelkovan.so\n");
        return 2;
    }
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
