/* A host in C: loads zelkovan.so, registers it and calls FINANCE.
 *
 *     cc -std=c11 c_host.c $(pkg-config --cflags zelkovan) -o c_host -ldl
 *     ./c_host $(pkg-config --variable=module zelkovan)
 */
#include <ctype.h>
#include <dlfcn.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <zelkovan/zelkovan.h>

/* ---- Services: what the module asks of its host. Those left out are for multibyte mode alone. */

static void upper(char* text, int64_t length) {
    for (int64_t i = 0; i < length; ++i) text[i] = (char)toupper((unsigned char)text[i]);
}

static void log_line(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments);
    printf("\n");
    va_end(arguments);
}

static void note(int32_t set, int32_t number) { printf("  note: message %d of set %d\n", number, set); }

/* Days since 1 January 1960, from the year 1 on, by Fliegel and Van Flandern: divisions drop the fraction. */
static double date(double month, double day, double year) {
    const int64_t m = (int64_t)month, y = (int64_t)year, a = (m - 14) / 12;
    const int64_t months = 1461 * (y + 4800 + a) / 4 + 367 * (m - 2 - 12 * a) / 12 - 3 * ((y + 4900 + a) / 100) / 4;
    return (double)(months + (int64_t)day - 32075 - ZELKOVAN_EPOCH_JULIAN_DAY);
}

static void end_process(int64_t code, int64_t detail) { exit(detail == 0 ? (int)code : 1); }

static void not_offered(void) { abort(); }

static void* allocate(void** vector, int64_t bytes, int64_t flags) {
    (void)vector, (void)flags;
    return bytes >= 0 ? malloc((size_t)bytes) : NULL;
}

static void* give_back(void** vector, void* block, int64_t bytes, int64_t flags) {
    (void)vector, (void)bytes, (void)flags, free(block);
    return NULL;
}

/* ---- The control block: where the module finds all that */

enum { WORDS = 128, VECTORS = 256, SLOTS = 512, MOST_ARGUMENTS = 8 };

typedef void Routine(void);
static Routine *services[VECTORS][SLOTS], **vectors[VECTORS], *memory[2];
static unsigned char marks[VECTORS], upper_case[256];
static void* translations[ZELKOVAN_FIRST_TRANSLATION + 5];
static void* locale[ZELKOVAN_LOCALE_MODE_RECORD + 1]; /* without a record: no multibyte mode */
static void* control_block[WORDS];                    /* without a toolkit: workspace is of the memory vector */

static void offer(int vector, int slot, Routine* routine) { services[vector][slot] = routine; }

static void fill_control_block(void) {
    for (int v = 0; v < VECTORS; ++v) {
        vectors[v] = services[v];
        for (int s = 0; s < SLOTS; ++s) offer(v, s, not_offered);
    }
    offer(ZELKOVAN_SERVICE_UPPER, (Routine*)upper);
    offer(ZELKOVAN_SERVICE_EXIT, (Routine*)end_process);
    offer(ZELKOVAN_SERVICE_NOTE, (Routine*)note);
    offer(ZELKOVAN_SERVICE_LOG, (Routine*)log_line);
    offer(ZELKOVAN_SERVICE_DATE, (Routine*)date);
    memory[0] = (Routine*)allocate;
    memory[1] = (Routine*)give_back;
    for (int i = 0; i < 256; ++i) upper_case[i] = (unsigned char)toupper(i);
    translations[ZELKOVAN_FIRST_TRANSLATION + 2] = upper_case; /* the only mode that calls ask for */
    control_block[ZELKOVAN_GCB_SERVICES] = vectors;
    control_block[ZELKOVAN_GCB_MARKS] = marks;
    control_block[ZELKOVAN_GCB_COLLATING] = upper_case; /* names in any case */
    control_block[ZELKOVAN_GCB_MEMORY] = memory;
    control_block[ZELKOVAN_GCB_LOCALE] = locale;
    control_block[ZELKOVAN_GCB_TRANSLATION] = translations;
}

/* ---- Loading: from the entry point to the dispatcher */

static uint32_t (*finance)(HostCallContext* context, double* result);

static int load(const char* path) {
    const ImageInformation* (*enter)(void* gcb_anchor, void* pidb_anchor) = NULL;
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    void* symbol = library != NULL ? dlsym(library, "mcn_main") : NULL;
    if (symbol == NULL) return printf("%s\n", dlerror()), 0;
    memcpy(&enter, &symbol, sizeof enter);
    const ImageInformation* image = enter(control_block, NULL);
    if (strcmp(image->tag, ZELKOVAN_IMAGE_TAG) != 0 || image->magic != ZELKOVAN_IMAGE_MAGIC) return 0;
    const ProgramControl* program = *(const ProgramControl* const*)image->program_controls;
    FunctionItemList* list = program->entry(ZELKOVAN_REQUEST_ITEMS);
    uint32_t (**entries)(HostCallContext*, double*) = program->entry(ZELKOVAN_REQUEST_ENTRIES);
    finance = entries[1];
    printf("%s offers %s\n", ZELKOVAN_PROGRAM_NAME, list->items[0].name);
    free(list), free(entries); /* both are the host's */
    return 1;
}

/* ---- Calls */

typedef struct Value {
    char* text; /* null: a number */
    double number;
} Value;

/* FINANCE of the values; the first is the calculation's name. */
static void call(int count, Value* values) {
    struct {
        HostCallContext head;
        ArgSlot slots[MOST_ARGUMENTS]; /* right behind the head */
    } record = {.head.count = count};
    CharacterDescriptor texts[MOST_ARGUMENTS] = {0};
    double result = 0;
    for (int i = 0; i < count; ++i) {
        const size_t length = values[i].text != NULL ? strlen(values[i].text) : 0;
        texts[i] = (CharacterDescriptor){.length = (uint32_t)length, .text = values[i].text};
        record.slots[i] = values[i].text != NULL ? (ArgSlot){.type = ZELKOVAN_TYPE_CHARACTER, .value = &texts[i]}
                                                 : (ArgSlot){.type = ZELKOVAN_TYPE_NUMERIC, .value = &values[i].number};
    }
    printf("%s\n", values[0].text);
    const uint32_t status = finance(&record.head, &result);
    if (status == ZELKOVAN_STATUS_SUCCESS && result == result) printf("  %.10g\n", result);
    if (status == ZELKOVAN_STATUS_SUCCESS && result != result) printf("  no value\n"); /* a NaN */
    if (status == ZELKOVAN_STATUS_INVALID_ARGUMENT) printf("  refused\n");
    for (int i = 0; i < count; ++i) {
        if (record.slots[i].flags & ZELKOVAN_FLAG_INVALID) printf("  argument %d is at fault\n", i);
    }
}

#define CALL(...) call(sizeof((Value[]){__VA_ARGS__}) / sizeof(Value), (Value[]){__VA_ARGS__})

int main(int count, char** words) {
    fill_control_block();
    if (count != 2 || !load(words[1])) return 1;
    CALL({"PMT", 0}, {NULL, 0.005}, {NULL, 360}, {NULL, 200000});
    CALL({"PMT", 0}, {NULL, 0.005}, {NULL, 2.5}, {NULL, 200000});
    CALL({"PMT", 0}, {NULL, 0.005});
    CALL({"XIRR", 0}, {NULL, -100}, {NULL, 110}, {NULL, 17532}, {NULL, 17897});
    CALL({"XIRR", 0}, {NULL, 100}, {NULL, 110}, {NULL, 17532}, {NULL, 17897});
    CALL({"COUPNCD", 0}, {NULL, 17577}, {NULL, 21138}, {NULL, 2}, {"Act/360", 0});
    return 0;
}
