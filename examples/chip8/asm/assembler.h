/*
 * A small two-pass CHIP-8 / SUPER-CHIP assembler.
 *
 * One statement per line; ";" starts a comment; case does not matter except in names.
 *   label:                    a label may stand alone or before a statement
 *   NAME = expression         a constant (also "NAME equ expression"); forward references allowed
 *   db 1, $20, 0b1010_0000    bytes;  dw 0x1234, label   big-endian 16-bit words
 *   cls  ret  scd n  scr  scl  exit  low  high
 *   jp addr  jp v0, addr  call addr  se/sne vx, byte|vy  ld ...  add ...  or/and/xor/sub/subn vx, vy
 *   shr/shl vx [, vy]  rnd vx, byte  drw vx, vy, n  skp/sknp vx
 *   ld forms: vx,byte  vx,vy  i,addr  vx,dt  vx,k  dt,vx  st,vx  f,vx  hf,vx  b,vx  [i],vx  vx,[i]  r,vx  vx,r
 * Expressions: numbers (decimal, 0x.., $.., 0b.. with optional "_"), names, + - * / and parentheses.
 * The program is placed at 0x200.
 */
#ifndef CHIP8_ASSEMBLER_H
#define CHIP8_ASSEMBLER_H

#include <cstdint>
#include <string>
#include <vector>

namespace chip8
{

struct AssemblyResult {
    std::vector<uint8_t> bytes;
    std::vector<std::string> errors; /* "<name>:<line>: error: <message>", in line order */
    bool ok() const { return errors.empty(); }
};

AssemblyResult assemble(const std::string &source, const std::string &name = "<source>");

} // namespace chip8

#endif
