/* The host of c_host_bytes.c: a control block full of junk, services and memory that write down how they were reached.
 * All of it by byte offsets and numbers of its own.
 */
#ifndef TESTS_ABI_C_HOST_BLOCK_H
#define TESTS_ABI_C_HOST_BLOCK_H

#include <stddef.h>
#include <stdint.h>

typedef void Routine(void);
void* address_of(Routine* routine); /* as data, which C has no conversion for */
uint64_t word(const void* address);

/* ---- Registers. What arrived: rdi rsi rdx rcx r8 r9, rax, r10, rsp, two stack words, xmm0 and xmm7. */

enum { SEEN_AL = 6, SEEN_IDENTIFIER = 7, SEEN_RSP = 8, SEEN_STACK = 9, SEEN_XMM0 = 11, SEEN_XMM7 = 12 };
extern uint64_t c_host_seen[16];
extern uint64_t c_host_wanted[16]; /* the same, as c_host_adapter_call sets it */

void c_host_record_entry(void); /* a routine that notes what arrived, nothing else */
void c_host_adapter_call(void* target);

/* ---- The log */

extern char log_lines[128][96];
extern int log_count;
extern int log_identifiers_right;
extern int log_stacks_aligned;

__attribute__((noreturn)) void unexpected(void);

/* ---- Memory: the latest request */

extern void* memory_vector[4];
extern int memory_calls;
extern int memory_out;
extern void* memory_seen_vector;
extern int64_t memory_seen_size;
extern int64_t memory_seen_flags;
extern unsigned char* memory_block;

/* ---- The control block */

extern uint64_t control_block[128];
extern void* slots_of_vector[3][512]; /* text services, log and exit, all others */
extern void* vectors[256];
extern unsigned char marks[256];
extern unsigned char collating_table[256];
extern unsigned char translation_tables[5][256];
extern void* translation_pointers[8];
extern uint64_t locale_block[8];
extern unsigned char mode_record[96];

void build_control_block(void);
int only_mark(int vector); /* is cleared */

/* All that is the host's, one after the other. Marks are looked at apart. */
enum {
    PICTURE_BYTES = sizeof control_block + sizeof slots_of_vector + sizeof vectors + sizeof collating_table +
                    sizeof translation_tables + sizeof translation_pointers + sizeof locale_block + sizeof mode_record +
                    sizeof memory_vector
};
void take_picture(unsigned char* picture);

/* ---- Checks, and what they look at */

extern int checks;
extern int failures;
void check(int holds, const char* what);

uint64_t u64(const void* record, size_t offset);
uint32_t u32(const void* record, size_t offset);
const void* pointer(const void* record, size_t offset);
Routine* routine_at(const void* record, size_t offset);

void open_module(const char* path);
void* symbol(const char* name); /* ends the program where the module exports none */

#endif
