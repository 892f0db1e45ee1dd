/* zelkovan: the module's interface to its host, for C11 and C++.
 *
 * A host loads zelkovan.so, calls mcn_main once, finds in the image record that it returns the registration entry,
 * and asks that entry for the function items (request 1) and for the dispatcher (request 2). From then on it calls the
 * dispatcher, fncfin, for every evaluation of FINANCE.
 *
 * All offsets below are in bytes on 64-bit Linux (x86-64) and are part of the interface.
 */
#ifndef ZELKOVAN_H
#define ZELKOVAN_H

/* ---- The host's global control block --------------------------------------------------------------------------- */

/* Words of 64 bits, and what they point to. The toolkit's word is read once, at load, the others anew at every use.
 *
 * The memory vector: slot 0 allocates, void* (void** vector, int64_t bytes, int64_t flags), null where there is no
 * memory; slot 1 releases, void* (void** vector, void* block, int64_t bytes, int64_t flags). The toolkit: its first word
 * points to a table of operations, 0 creates a pool, void* (void* toolkit, const char* name, uint64_t flags). A pool: its
 * first word points to a table, 0 allocates, void* (void* pool, int64_t bytes, uint64_t flags), 1 releases the pool. */
#define ZELKOVAN_GCB_SERVICES 0     /* pointers to service vectors, each a table of routines */
#define ZELKOVAN_GCB_MARKS 1        /* a byte for each service vector; the module clears it when it enters one */
#define ZELKOVAN_GCB_COLLATING 6    /* 256 bytes: texts are compared through them */
#define ZELKOVAN_GCB_MEMORY 10      /* the memory vector */
#define ZELKOVAN_GCB_LOCALE 13      /* its word 3 points to the record of multibyte mode, or is null */
#define ZELKOVAN_GCB_TRANSLATION 27 /* its entry 2 + m points to the 256 bytes of translation mode m, 0..4 */
#define ZELKOVAN_GCB_TOOLKIT 82     /* the toolkit, or null: then all workspace comes from the memory vector */

#define ZELKOVAN_LOCALE_MODE_RECORD 3
#define ZELKOVAN_MODE_RECORD_ACTIVE 72 /* this byte of the record is not 0 in multibyte mode */
#define ZELKOVAN_FIRST_TRANSLATION 2

/* Services: vector, slot. The module jumps to the routine with vector << 32 | slot in register r10. */
#define ZELKOVAN_SERVICE_LOWER 0, 330      /* void (char* text, int64_t length): converts letters in place */
#define ZELKOVAN_SERVICE_UPPER 0, 331      /* the same */
#define ZELKOVAN_SERVICE_TRANSLATE_0 4, 7  /* in multibyte mode only: void (const char* source, int64_t length, */
#define ZELKOVAN_SERVICE_TRANSLATE_1 4, 39 /*   char* destination, int64_t destination_length, int64_t one) */
#define ZELKOVAN_SERVICE_COMPARE 4, 65     /* in multibyte mode only: int32_t (const char* a, int64_t a_length, */
                                           /*   const char* b, int64_t b_length, int64_t options), 0 if equal */
#define ZELKOVAN_SERVICE_EXIT 39, 4        /* void (int64_t code, int64_t detail): ends the process */
#define ZELKOVAN_SERVICE_NOTE 39, 70       /* void (int32_t message_set, int32_t message_number) */
#define ZELKOVAN_SERVICE_LOG 39, 89        /* void (const char* format, ...): a line, as for printf */
#define ZELKOVAN_SERVICE_DATE 164, 11      /* double (double month, double day, double year): days since 1960-01-01 */

#ifndef __ASSEMBLER__

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define ZELKOVAN_ASSERT(condition, text) static_assert(condition, text)
extern "C" {
#else
#define ZELKOVAN_ASSERT(condition, text) _Static_assert(condition, text)
#endif

/* Pointers of records stand on words of 8 bytes, also where they have 4: all offsets hold there too. */
#define ZELKOVAN_ON_A_WORD __attribute__((aligned(8)))

/* Exported from zelkovan.so, and bound inside it: nobody can put another definition in its place. */
#ifdef __wasm__
#define ZELKOVAN_EXPORT __attribute__((visibility("default"))) /* there is no other place */
#else
#define ZELKOVAN_EXPORT __attribute__((visibility("protected")))
#endif

/* ---- Statuses and the missing value ---------------------------------------------------------------------------- */

#define ZELKOVAN_STATUS_SUCCESS UINT32_C(0)
#define ZELKOVAN_STATUS_MISSING_RESULT UINT32_C(120833)   /* an argument is missing; from handlers only */
#define ZELKOVAN_STATUS_INVALID_ARGUMENT UINT32_C(120836) /* all that fncfin reports besides success */

/* The double that a host writes for "no value". Any NaN that it hands over counts as missing as well. */
#define ZELKOVAN_MISSING_VALUE_BITS UINT64_C(0xFFFFFE0000000000)

/* Dates are days since 1 January 1960, day 0, by Julian day number. */
#define ZELKOVAN_EPOCH_YEAR 1960
#define ZELKOVAN_EPOCH_JULIAN_DAY 2436935

#define ZELKOVAN_LARGEST_WHOLE INT64_C(9007199254740992) /* 2^53: an argument that is a whole number is not above it */
#define ZELKOVAN_LONGEST_BASIS_TEXT 255                  /* bytes: a longer text names no basis */

/* ---- What the module asks of its host --------------------------------------------------------------------------- */

#define ZELKOVAN_MEMORY_FLAGS 0x2006 /* of every block of the memory vector, at its release as well */
#define ZELKOVAN_POOL_NAME "WORKPOOL"
#define ZELKOVAN_POOL_FLAGS UINT64_C(0x80000000)   /* of a pool and of its blocks */
#define ZELKOVAN_EXIT_WITHOUT_MEMORY INT64_C(1016) /* no memory for what a registration request asks for; detail 0 */

/* Notes: XIRR found no rate. */
#define ZELKOVAN_MESSAGE_SET 744
#define ZELKOVAN_MESSAGE_NO_CONVERGENCE 321
#define ZELKOVAN_MESSAGE_NO_USABLE_FLOWS 322
#define ZELKOVAN_MESSAGE_NO_MORE_NOTES 323

/* Whether notes are counted, and the first five alone are written, in a context of that mode. */
#define ZELKOVAN_COUNTS_NOTES(mode) ((mode) == 72 || (mode) == 88 || (mode) == 104 || (mode) == 136)
#define ZELKOVAN_MOST_NOTES 5

/* ---- A call ---------------------------------------------------------------------------------------------------- */

enum {
    ZELKOVAN_TYPE_NUMERIC = 1,
    ZELKOVAN_TYPE_CHARACTER = 2,
    ZELKOVAN_TYPE_HOST_MARK = 4, /* the host's; the module clears it before it looks at a type */
    ZELKOVAN_FLAG_INVALID = 1    /* set by the module: this argument is at fault; the other flag bits are the host's */
};

/* One argument. value is null where the host supplies none. */
typedef struct ArgSlot {
    uint8_t type;
    uint8_t flags;
    uint8_t host_owned[6];
    ZELKOVAN_ON_A_WORD void* value; /* numeric: a double; character: a CharacterDescriptor */
} ArgSlot;
ZELKOVAN_ASSERT(sizeof(ArgSlot) == 16, "an argument slot has 16 bytes");
ZELKOVAN_ASSERT(offsetof(ArgSlot, flags) == 1, "flag byte");
ZELKOVAN_ASSERT(offsetof(ArgSlot, value) == 8, "value pointer");

/* A text: blank-padded bytes, not NUL-terminated. */
typedef struct CharacterDescriptor {
    uint8_t host_owned[8];
    uint32_t length;
    uint8_t host_owned_too[4];
    ZELKOVAN_ON_A_WORD char* text;
} CharacterDescriptor;
ZELKOVAN_ASSERT(sizeof(CharacterDescriptor) == 24, "a character descriptor has 24 bytes");
ZELKOVAN_ASSERT(offsetof(CharacterDescriptor, length) == 8, "text length");
ZELKOVAN_ASSERT(offsetof(CharacterDescriptor, text) == 16, "text pointer");

/* The head of a call; count slots follow it at once. Argument 0 is the name of the calculation. */
typedef struct HostCallContext {
    uint8_t host_owned[24];
    uint8_t mode; /* ZELKOVAN_COUNTS_NOTES(mode): the notes of XIRR are limited */
    uint8_t host_owned_too[3];
    int32_t notes_written; /* counts them then */
    int64_t count;         /* of arguments, the name included; its low 32 bits, signed, are what counts */
} HostCallContext;
ZELKOVAN_ASSERT(sizeof(HostCallContext) == 40, "the slots begin at byte 40");
ZELKOVAN_ASSERT(offsetof(HostCallContext, mode) == 24, "mode byte");
ZELKOVAN_ASSERT(offsetof(HostCallContext, notes_written) == 28, "note counter");
ZELKOVAN_ASSERT(offsetof(HostCallContext, count) == 32, "argument count");

/* ---- What the loader reads ------------------------------------------------------------------------------------- */

#define ZELKOVAN_IMAGE_TAG "ZOT_Image_Information="
#define ZELKOVAN_IMAGE_MAGIC UINT32_C(0xB0BDEBED)
#define ZELKOVAN_IMAGE_LAYOUT 8
#define ZELKOVAN_PROGRAM_NAME "zelkovan"
#define ZELKOVAN_FUNCTION_NAME "FINANCE"

typedef struct ImageInformation {
    char tag[24];
    uint32_t magic;
    uint32_t reserved;
    uint64_t layout;
    char short_version[6];
    char release[20];
    char build_date[30];                             /* Jan 01 2000 */
    ZELKOVAN_ON_A_WORD const void* program_controls; /* const ProgramControl* const*, up to a null pointer */
    ZELKOVAN_ON_A_WORD const char* notice;
    ZELKOVAN_ON_A_WORD char sequence[8];
} ImageInformation;
ZELKOVAN_ASSERT(sizeof(ImageInformation) == 120, "the image record has 120 bytes");
ZELKOVAN_ASSERT(offsetof(ImageInformation, magic) == 24, "magic");
ZELKOVAN_ASSERT(offsetof(ImageInformation, layout) == 32, "layout");
ZELKOVAN_ASSERT(offsetof(ImageInformation, short_version) == 40, "short version");
ZELKOVAN_ASSERT(offsetof(ImageInformation, release) == 46, "release");
ZELKOVAN_ASSERT(offsetof(ImageInformation, build_date) == 66, "build date");
ZELKOVAN_ASSERT(offsetof(ImageInformation, program_controls) == 96, "program controls");
ZELKOVAN_ASSERT(offsetof(ImageInformation, notice) == 104, "notice");
ZELKOVAN_ASSERT(offsetof(ImageInformation, sequence) == 112, "sequence");

/* Answers a registration request: 1 the function items; 2 the entry points, a word of the host's and after it one pointer
 * for each item; anything else null. What it answers is of the host's memory, 16 bytes, and the host's from then on. */
typedef void* RegistrationEntry(int32_t request, ...);

typedef struct ProgramControl {
    uint64_t header;
    uint64_t first_size;
    uint64_t second_size;
    char name[8]; /* not NUL-terminated */
    uint64_t reserved;
    ZELKOVAN_ON_A_WORD RegistrationEntry* entry;
    uint64_t entries;
    uint64_t first_build;
    uint64_t second_build;
    uint64_t kind;
} ProgramControl;
ZELKOVAN_ASSERT(sizeof(ProgramControl) == 80, "the program-control record has 80 bytes");
ZELKOVAN_ASSERT(offsetof(ProgramControl, name) == 24, "module name");
ZELKOVAN_ASSERT(offsetof(ProgramControl, entry) == 40, "registration entry");
ZELKOVAN_ASSERT(offsetof(ProgramControl, first_build) == 56, "build identification");
ZELKOVAN_ASSERT(offsetof(ProgramControl, kind) == 72, "kind");

typedef struct FunctionItem {
    char name[24];
    uint32_t first_property;
    uint32_t second_property;
    uint64_t third_property;
    uint64_t fourth_property;
    uint64_t fifth_property;
} FunctionItem;
ZELKOVAN_ASSERT(sizeof(FunctionItem) == 56, "the function item has 56 bytes");
ZELKOVAN_ASSERT(offsetof(FunctionItem, first_property) == 24, "first property");
ZELKOVAN_ASSERT(offsetof(FunctionItem, third_property) == 32, "third property");
ZELKOVAN_ASSERT(offsetof(FunctionItem, fifth_property) == 48, "fifth property");

/* The answer to request 1. */
typedef struct FunctionItemList {
    uint32_t count;
    uint8_t host_owned[4];
    ZELKOVAN_ON_A_WORD const FunctionItem* items;
} FunctionItemList;
ZELKOVAN_ASSERT(sizeof(FunctionItemList) == 16, "the item list has 16 bytes");
ZELKOVAN_ASSERT(offsetof(FunctionItemList, items) == 8, "items");

enum {
    ZELKOVAN_REQUEST_ITEMS = 1,
    ZELKOVAN_REQUEST_ENTRIES = 2,
    ZELKOVAN_VERSION_BYTES = 208 /* what kxvercn1 copies: 26 words, texts and numbers of the build */
};

ZELKOVAN_EXPORT extern const ImageInformation vi_mcn;
ZELKOVAN_EXPORT extern const ProgramControl pcn_ZELKOVAN;
ZELKOVAN_EXPORT extern const ProgramControl* const mcn_pcns[2]; /* null-terminated */
ZELKOVAN_EXPORT extern const FunctionItem fncitems;

/* Keeps both anchors, reads the toolkit handle, returns &vi_mcn. gcb_anchor: the host's global control block. */
ZELKOVAN_EXPORT const ImageInformation* mcn_main(void* gcb_anchor, void* pidb_anchor);
ZELKOVAN_EXPORT void* zelkovan(int32_t request, ...);
ZELKOVAN_EXPORT void kxvercn1(void* destination);

/* Evaluates FINANCE. Returns 0 with *result written, or 120836: then *result is the missing value, or untouched
 *   - where the call never reached a calculation: unknown name, wrong number of arguments;
 *   - TBILLEQ, where the equation of a bill of more than half a year has no real solution;
 *   - XNPV, where the number of arguments is odd;
 *   - XNPV and XIRR, where the host has no memory for their working arrays.
 * So write what *result shall be then before the call. A null result is never written to.
 *
 * This, the counters and the kernels give the same bits in any floating-point mode of the calling thread. They leave the
 * mode as it is, and call the host's services in the one in which a process starts. */
ZELKOVAN_EXPORT uint32_t fncfin(HostCallContext* context, double* result);

/* Missing-value counters: every slot read as a number; every slot by its type; slot 0 only, whatever the count (1.0 or
 * 0.0). Return 0. */
ZELKOVAN_EXPORT uint32_t fncnmis(const HostCallContext* context, double* result);
ZELKOVAN_EXPORT uint32_t fnccmis(const HostCallContext* context, double* result);
ZELKOVAN_EXPORT uint32_t fncmis(const HostCallContext* context, double* result);

/* Memory adapters: tail calls into slot 0 (allocate) or 1 (release) of the vector given first, the last argument shown
 * sign-extended from 32 to 64 bits; what follows is handed on as it is. */
ZELKOVAN_EXPORT void* vmalloc_handler(void* vector, uint64_t a, int32_t n, ...);
ZELKOVAN_EXPORT void* vmalcp_handler(void* vector, uint64_t a, int32_t n, ...);
ZELKOVAN_EXPORT void* vmfree_handler(void* vector, uint64_t a, uint64_t b, int32_t n, ...);

/* ---- Columns: one calculation over many rows ---------------------------------------------------------------------
 *
 * Rows that are plain, with every argument there and usual, are calculated side by side, with the bits that fncfin gives
 * each. All others (refusals, missing and rare values, calculations that have nothing to gain) are left to fncfin. */

#define ZELKOVAN_COLUMN_NUMBERS UINT32_C(0) /* a double in each row; a NaN is missing */
#define ZELKOVAN_COLUMN_SLOTS UINT32_C(1)   /* an ArgSlot in each row, read as in a call */
#define ZELKOVAN_COLUMN_LISTS \
    UINT32_C(2) /* arguments first[starts[r]] .. first[starts[r + 1] - 1], doubles, in row r */

typedef struct ZelkovanColumn {
    uint32_t kind;
    uint32_t reserved;                        /* 0 */
    ZELKOVAN_ON_A_WORD const void* first;     /* the first row's; of lists the values of all */
    int64_t stride;                           /* bytes from a row's to the next one's; 0: the same in all rows */
    ZELKOVAN_ON_A_WORD const int64_t* starts; /* of lists: rows + 1 of them, none below the one before */
} ZelkovanColumn;

#define ZELKOVAN_INSTRUCTIONS_BEST UINT32_C(0) /* that the processor has */
#define ZELKOVAN_INSTRUCTIONS_SSE2 UINT32_C(1)
#define ZELKOVAN_INSTRUCTIONS_AVX2 UINT32_C(2) /* with fused multiply-add; without them no row is answered */
#define ZELKOVAN_INSTRUCTIONS_NONE UINT32_C(3) /* no row is answered */

typedef struct ZelkovanColumns {
    ZELKOVAN_ON_A_WORD const char* name; /* of the calculation, as in a call */
    int64_t name_length;
    ZELKOVAN_ON_A_WORD const ZelkovanColumn* columns; /* the first argument after the name, the second, ... */
    int64_t column_count;
    int64_t rows;
    ZELKOVAN_ON_A_WORD double*
        results; /* one a row; of rows that are not answered whatever was there or anything else */
    ZELKOVAN_ON_A_WORD uint64_t*
        answered; /* a bit a row, the first the lowest: (rows + 63) / 64 words, each of which is set */
    uint32_t instructions;
    uint32_t reserved; /* 0 */
} ZelkovanColumns;

/* Returns how many rows are answered. Reads nothing of a request with a negative count, and answers none. Flags of
 * floating-point exceptions are left as they were. */
ZELKOVAN_EXPORT int64_t fnccols(const ZelkovanColumns* request);

/* ---- Numeric kernels, pure functions --------------------------------------------------------------------------- */

ZELKOVAN_EXPORT double zexpm1(double x);                            /* e^x - 1 */
ZELKOVAN_EXPORT double zln1px(double x);                            /* ln(1 + x) */
ZELKOVAN_EXPORT double zlnSumOfExp(double a, double b);             /* ln(e^a + e^b) */
ZELKOVAN_EXPORT double zvasum(const double* values, int64_t n);     /* sum of |values[i]|; 0 for n <= 0 */
ZELKOVAN_EXPORT double zvamx(const double* values, int64_t n);      /* largest |values[i]|; 0 for n <= 0 */
ZELKOVAN_EXPORT double zpower(int32_t* status, double x, double y); /* x^y; status: 0 valid, 1 overflow,
                         2 negative base with an exponent that is not integral, 3 zero base and y not positive */

#ifdef __cplusplus
}
#endif

#endif /* __ASSEMBLER__ */

#endif
