#include "c_host_block.h"

#include <dlfcn.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* ---- Services ------------------------------------------------------------------------------------------------- */

uint64_t c_host_seen[16];

void c_host_log_entry(void);
uint64_t c_host_wanted[16];

__asm__(
    "    .pushsection .text\n"
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
    "    .size c_host_adapter_call, . - c_host_adapter_call\n"
    "    .popsection\n");

char log_lines[128][96];
int log_count;
int log_identifiers_right;
int log_stacks_aligned;

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

void unexpected(void) {
    printf("FAILED  a service was reached that no check asks for\n");
    exit(2);
}

/* ---- Memory --------------------------------------------------------------------------------------------------- */

void* memory_vector[4];
int memory_calls;
int memory_out;
void* memory_seen_vector;
int64_t memory_seen_size;
int64_t memory_seen_flags;
unsigned char* memory_block;

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

uint64_t control_block[128];
void* slots_of_vector[3][512];
void* vectors[256];
unsigned char marks[256];
unsigned char collating_table[256];
unsigned char translation_tables[5][256];
void* translation_pointers[8];
uint64_t locale_block[8];
unsigned char mode_record[96];

uint64_t word(const void* address) { return (uint64_t)(uintptr_t)address; }

void* address_of(Routine* routine) {
    void* address;
    memcpy(&address, &routine, sizeof address);
    return address;
}

void build_control_block(void) {
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

void take_picture(unsigned char* picture) {
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

int only_mark(int vector) {
    int right = marks[vector] == 0;
    for (int v = 0; v < 256; ++v) {
        if (v != vector && marks[v] != 0xEE) right = 0;
    }
    return right;
}

/* ---- Checks, and what they look at */

int checks;
int failures;

void check(int holds, const char* what) {
    ++checks;
    if (!holds) ++failures;
    printf("%s  %s\n", holds ? "ok    " : "FAILED", what);
}

uint64_t u64(const void* record, size_t offset) {
    uint64_t value;
    memcpy(&value, (const unsigned char*)record + offset, sizeof value);
    return value;
}

uint32_t u32(const void* record, size_t offset) {
    uint32_t value;
    memcpy(&value, (const unsigned char*)record + offset, sizeof value);
    return value;
}

const void* pointer(const void* record, size_t offset) { return (const void*)(uintptr_t)u64(record, offset); }

Routine* routine_at(const void* record, size_t offset) {
    Routine* routine;
    memcpy(&routine, (const unsigned char*)record + offset, sizeof routine);
    return routine;
}

/* ---- The module */

static void* library;

void open_module(const char* path) {
    library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library != NULL) return;
    printf("FAILED  %s\n", dlerror());
    exit(2);
}

void* symbol(const char* name) {
    void* found = dlsym(library, name);
    if (found == NULL) {
        printf("FAILED  %s is not exported\n", name);
        exit(2);
    }
    return found;
}
