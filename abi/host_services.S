/* Host service stubs and memory adapters.
 *
 * A stub may change nothing that carries an argument: not rdi rsi rdx rcx r8 r9, not the vector registers, not al (the
 * number of vector registers of a variadic call), not the stack. That leaves r10, where the host finds the service
 * identifier, and r11, which carries the jump target.
 */

#include <cet.h> /* _CET_ENDBR, where control flow is protected; the note that says so */

#include "abi/zelkovan.h"

.macro service name, vector, slot
    .globl  \name
    .hidden \name
    .type   \name, @function
    .p2align 4
\name:
    .cfi_startproc
    _CET_ENDBR
    movq    v_global_gcb_anchor(%rip), %r11
    movq    8*ZELKOVAN_GCB_MARKS(%r11), %r10    /* the marks, a byte for each vector */
    movb    $0, \vector(%r10)
    movq    8*ZELKOVAN_GCB_SERVICES(%r11), %r11 /* the service vectors */
    movq    8*\vector(%r11), %r11
    movq    8*\slot(%r11), %r11
    movabsq $((\vector << 32) | \slot), %r10
    jmpq    *%r11
    .cfi_endproc
    .size   \name, . - \name
.endm

/* A call into a slot of the vector in rdi, one argument widened from 32 to 64 bits. */
.macro adapter name, slot, narrow, wide
    .globl  \name
    .protected \name
    .type   \name, @function
    .p2align 4
\name:
    .cfi_startproc
    _CET_ENDBR
    movslq  %\narrow, %\wide
    movq    8*\slot(%rdi), %r11
    jmpq    *%r11
    .cfi_endproc
    .size   \name, . - \name
.endm

    .text
    service xexit,    ZELKOVAN_SERVICE_EXIT
    service xpmlog,   ZELKOVAN_SERVICE_NOTE
    service xpslog,   ZELKOVAN_SERVICE_LOG
    service wzstrlo,  ZELKOVAN_SERVICE_LOWER
    service wzstrup,  ZELKOVAN_SERVICE_UPPER
    service wzsxcch,  ZELKOVAN_SERVICE_TRANSLATE_0
    service wzsxrch,  ZELKOVAN_SERVICE_TRANSLATE_1
    service wzsxcmn,  ZELKOVAN_SERVICE_COMPARE
    service zmdy,     ZELKOVAN_SERVICE_DATE

    adapter vmalloc_handler, 0, edx, rdx
    adapter vmalcp_handler,  0, edx, rdx
    adapter vmfree_handler,  1, ecx, rcx

    .section .note.GNU-stack, "", @progbits
