/* Offsets are those of struct Registers in registers.hpp. */

    .text

    .globl  registers_call
    .type   registers_call, @function
registers_call:
    .cfi_startproc
    pushq   %rbx
    .cfi_adjust_cfa_offset 8
    .cfi_rel_offset rbx, 0
    pushq   %rbp
    .cfi_adjust_cfa_offset 8
    .cfi_rel_offset rbp, 0
    subq    $8, %rsp
    .cfi_adjust_cfa_offset 8
    movq    %rdi, %rbp
    movq    %rsi, %rbx
    pushq   72(%rbx)
    .cfi_adjust_cfa_offset 8
    pushq   64(%rbx)
    .cfi_adjust_cfa_offset 8
    .set i, 0
    .irp register, xmm0, xmm1, xmm2, xmm3, xmm4, xmm5, xmm6, xmm7
    movups  96 + 16 * i(%rbx), %\register
    .set i, i + 1
    .endr
    movq    0(%rbx), %rdi
    movq    8(%rbx), %rsi
    movq    16(%rbx), %rdx
    movq    24(%rbx), %rcx
    movq    32(%rbx), %r8
    movq    40(%rbx), %r9
    movq    48(%rbx), %rax
    callq   *%rbp
    addq    $24, %rsp
    .cfi_adjust_cfa_offset -24
    popq    %rbp
    .cfi_adjust_cfa_offset -8
    .cfi_restore rbp
    popq    %rbx
    .cfi_adjust_cfa_offset -8
    .cfi_restore rbx
    ret
    .cfi_endproc
    .size   registers_call, . - registers_call

    .globl  registers_record
    .type   registers_record, @function
registers_record:
    .cfi_startproc
    leaq    recorded(%rip), %r11
    movq    %rdi, 0(%r11)
    movq    %rsi, 8(%r11)
    movq    %rdx, 16(%r11)
    movq    %rcx, 24(%r11)
    movq    %r8, 32(%r11)
    movq    %r9, 40(%r11)
    movq    %rax, 48(%r11)
    movq    %r10, 56(%r11)
    movq    8(%rsp), %rax
    movq    %rax, 64(%r11)
    movq    16(%rsp), %rax
    movq    %rax, 72(%r11)
    movq    %rsp, 80(%r11)
    .set i, 0
    .irp register, xmm0, xmm1, xmm2, xmm3, xmm4, xmm5, xmm6, xmm7
    movups  %\register, 96 + 16 * i(%r11)
    .set i, i + 1
    .endr
    subq    $8, %rsp
    .cfi_adjust_cfa_offset 8
    movq    %r11, %rdi
    callq   registers_recorded@PLT
    addq    $8, %rsp
    .cfi_adjust_cfa_offset -8
    movq    %rax, %xmm0
    ret
    .cfi_endproc
    .size   registers_record, . - registers_record

    .local  recorded
    .comm   recorded, 224, 16

    .section .note.GNU-stack, "", @progbits
